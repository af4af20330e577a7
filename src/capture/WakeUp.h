#pragma once

#include "base/FileDescriptor.h"

#include <sys/eventfd.h>

namespace vantro::capture {

/// Ends another thread's wait: once rung it stays readable. `ring` on any thread.
class WakeUp {
  public:
    WakeUp() : m_event(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

    int fd() const { return m_event.get(); }
    void ring() const { eventfd_write(fd(), 1); }

  private:
    base::FileDescriptor m_event;
};

} // namespace vantro::capture
