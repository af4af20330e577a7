#pragma once

#include <functional>
#include <memory>
#include <string>

#include <sdbus-c++/sdbus-c++.h>

namespace vantro::clickd {

/// Has polkit decide, perhaps by asking the user, whether a caller may watch.
class Authority {
  public:
    explicit Authority(sdbus::IConnection& bus);
    /// A question that is open is taken back.
    ~Authority();
    Authority(const Authority&) = delete;
    Authority& operator=(const Authority&) = delete;

    /// Why not; empty where it may.
    using Answer = std::function<void(const std::string& whyNot)>;
    /// `caller` is its unique name on the bus. Once.
    void ask(const std::string& caller, Answer answer);

  private:
    std::unique_ptr<sdbus::IProxy> m_polkit;
    std::string m_question; // while it is open
};

} // namespace vantro::clickd
