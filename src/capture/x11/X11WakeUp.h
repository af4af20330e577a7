#pragma once

#include "base/FileDescriptor.h"

#include <sys/eventfd.h>

namespace vantro::capture::x11 {

/// Ends another thread's wait on a connection: once rung it stays readable. `ring` on any thread.
class X11WakeUp {
  public:
    X11WakeUp() : m_event(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

    int fd() const { return m_event.get(); }
    void ring() const { eventfd_write(fd(), 1); }

  private:
    base::FileDescriptor m_event;
};

} // namespace vantro::capture::x11
