#pragma once

#include "base/FileDescriptor.h"
#include "clickd/Authority.h"
#include "clickd/LoginSession.h"
#include "clicks/PressDevices.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include <sdbus-c++/sdbus-c++.h>
#include <sys/types.h>

namespace vantro::clickd {

struct Caller {
    std::string name; ///< on the bus, unique
    uid_t user = 0;
};

/// What one caller has asked for, from its question to its end.
///
///   asking ──(allowed)──→ silent ⇄ watching        silent: the session is not in use,
///     │                      │         │                   and no device is open
///     └───────────────────→ over ←─────┘           over: refused, the pipe or the caller has gone
///
/// Nothing calls back into a watch that is over; its owner destroys it then, but never from
/// inside of a call of the bus.
class Watch {
  public:
    using Answer = sdbus::Result<sdbus::UnixFd>;

    Watch(sdbus::IConnection& bus, Caller caller, const clicks::PointerSettings& settings,
          Answer&& answer);

    bool isOver() const { return m_state == State::over; }
    /// Has an error when nobody reads any more; -1 before there is a pipe.
    int pipe() const { return m_pipe.get(); }
    /// Readable when there are presses to take; -1 where no device is open.
    int devices() const { return m_devices ? m_devices->fd() : -1; }

    void pipeClosed() { end(); }
    void takePresses();

  private:
    enum class State { asking, silent, watching, over };

    void decided(const std::string& whyNot);
    void refuse(const std::string& why);
    void sessionChanged();
    void followSession();
    void handOut();
    void end();
    void write(clicks::PressRecord press);

    sdbus::IConnection& m_bus;
    const Caller m_caller;
    const clicks::PointerSettings m_settings;
    const Answer m_answer;
    State m_state = State::asking;
    base::FileDescriptor m_pipe; // its writing end
    std::uint32_t m_sequence = 0;
    bool m_hasLost = false;
    std::optional<clicks::PressDevices> m_devices; // while watching
    // What may call back goes first.
    std::optional<LoginSession> m_session; // once allowed
    Authority m_authority;
    sdbus::Slot m_callerGone;
};

} // namespace vantro::clickd
