#pragma once

#include "base/FileDescriptor.h"
#include "bus/EventLoop.h"
#include "capture/PlatformAbilities.h"
#include "capture/wayland/clicks/PressReader.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>

namespace vantro::capture::wayland {

/// How this program comes to know of clicks on a desktop that tells of none: by the service
/// vantro-clickd, whose use polkit may have the user allow, else by input devices that happen to be
/// readable. The user is asked once a run at the most. A thread of its own, "com.vantro.system",
/// hears the service; any thread calls.
///
///   absent ⇄ offered ──→ asking ──→ granted       absent: there is no service
///               ↑           ├─────→ refused       looked for anew before each recording; the
///               └───────────┴── granted's end     last two hold for the rest of the run
class ClickAccess {
  public:
    /// The one of this run of the program.
    static std::shared_ptr<ClickAccess> ofThisRun();

    ClickAccess();

    /// As it was found last: asks nobody.
    Ability ability() const;
    /// Has the user asked where that is still to be done, and waits for the answer. One that comes
    /// after `cancelled` counts as well.
    void ask(std::stop_token cancelled);
    /// Null where clicks are not told.
    std::unique_ptr<PressReader> open();

  private:
    enum class State { absent, offered, asking, granted, refused };

    void look();
    bool isServiceThere() const;
    void answered(const sdbus::Error* error, const sdbus::UnixFd& pipe);

    mutable std::mutex m_mutex;
    std::condition_variable_any m_changed;
    // Guarded by m_mutex:
    State m_state = State::absent;
    bool m_canReadDevices = false;
    std::string m_failure; // of the service, for the user
    base::FileDescriptor m_pipe;

    std::unique_ptr<sdbus::IConnection> m_bus; // null where there is no system bus
    std::unique_ptr<sdbus::IProxy> m_service;
    std::optional<bus::EventLoop> m_loop; // ends before what it calls
};

} // namespace vantro::capture::wayland
