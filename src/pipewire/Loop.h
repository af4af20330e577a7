#pragma once

#include "base/HostClock.h"

#include <functional>
#include <memory>

struct pw_loop; // NOLINT(readability-identifier-naming): the library's

namespace vantro::pipewire {

/// What waits for a server's news and calls those who want them. One thread makes, turns and
/// destroys it, and uses everything that hangs on it; nothing is called back outside of `turn`.
class Loop {
  public:
    /// Throws std::runtime_error when the system has no more room.
    Loop();
    ~Loop();
    Loop(const Loop&) = delete;
    Loop& operator=(const Loop&) = delete;

    /// Waits for something to do, at most so long, and does it. Not from within a callback.
    void turn(base::HostDuration longestWait);
    /// Turns until it is so; false when the time is over first.
    bool turnUntil(const std::function<bool()>& isSo, base::HostDuration longestWait);
    /// Makes a `turn` that waits return. Any thread, while the loop exists.
    void wakeUp();

    pw_loop& handle();

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::pipewire
