#pragma once

#include <pipewire/pipewire.h>

namespace vantro::test {

/// Holds a PipeWire loop still.
class LockedLoop {
  public:
    explicit LockedLoop(pw_thread_loop* loop) : m_loop(loop) { pw_thread_loop_lock(loop); }
    ~LockedLoop() { pw_thread_loop_unlock(m_loop); }
    LockedLoop(const LockedLoop&) = delete;
    LockedLoop& operator=(const LockedLoop&) = delete;

  private:
    pw_thread_loop* m_loop;
};

} // namespace vantro::test
