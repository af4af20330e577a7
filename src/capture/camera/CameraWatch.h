#pragma once

#include "base/Guarded.h"
#include "capture/CameraDevices.h"

#include <atomic>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace vantro::pipewire {
class Loop;
} // namespace vantro::pipewire

namespace vantro::capture::camera {

/// Knows which cameras there are, as they and their server come and go. It asks on a thread of its
/// own, so that nobody waits, and opens none of them. Any thread.
class CameraWatch {
  public:
    using Cameras = std::expected<std::vector<CameraDevice>, std::string>;

    /// `changed` is called on that thread when the answer is another than before, the first one
    /// included; not after the destruction, which waits for a call under way.
    explicit CameraWatch(std::function<void()> changed);
    ~CameraWatch();
    CameraWatch(const CameraWatch&) = delete;
    CameraWatch& operator=(const CameraWatch&) = delete;

    /// As far as it is known: nothing until the server has answered, or failed to.
    std::optional<Cameras> cameras() const {
        return m_cameras.with([](auto& value) { return value; });
    }

  private:
    void run(const std::stop_token& stop);
    void follow(pipewire::Loop& loop, const std::stop_token& stop);
    void know(Cameras cameras);

    const std::function<void()> m_changed;
    base::Guarded<std::optional<Cameras>> m_cameras;
    base::Guarded<pipewire::Loop*> m_loop; ///< while it runs
    std::jthread m_thread;                 // the last member: it uses the others
};

} // namespace vantro::capture::camera
