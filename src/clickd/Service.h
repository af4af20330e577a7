#pragma once

#include "clickd/Watch.h"

#include <chrono>
#include <map>
#include <memory>
#include <string>

#include <sdbus-c++/sdbus-c++.h>

namespace vantro::clickd {

/// `com.vantro.Clicks1` on the system bus, on one thread. Each caller may have one watch.
class Service {
  public:
    /// Throws sdbus::Error.
    Service();

    /// Serves until nobody has watched for as long as that. Throws sdbus::Error.
    void run(std::chrono::seconds longestIdle);

  private:
    using Settings = std::map<std::string, sdbus::Variant>;

    void watch(Watch::Answer&& answer, const Settings& settings);
    void handleBus();
    void waitFor(std::chrono::steady_clock::time_point deadline);

    const std::unique_ptr<sdbus::IConnection> m_bus;
    const std::unique_ptr<sdbus::IObject> m_object;
    std::map<std::string, Watch> m_watches; // by the caller's name
};

} // namespace vantro::clickd
