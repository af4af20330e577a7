#pragma once

#include "base/FileDescriptor.h"

#include <stop_token>
#include <thread>

namespace vantro::app::cli {

/// Turns Ctrl-C (and a polite kill) into a stop request; a second one ends the program at once.
///
/// Made by main before any other thread, because it blocks the signals in the calling thread and
/// every thread started from it. The stop request comes on a thread of its own.
class InterruptWatcher {
  public:
    InterruptWatcher();
    ~InterruptWatcher();
    InterruptWatcher(const InterruptWatcher&) = delete;
    InterruptWatcher& operator=(const InterruptWatcher&) = delete;

    std::stop_token token() const { return m_source.get_token(); }

  private:
    void watch();

    std::stop_source m_source;
    base::FileDescriptor m_signals;
    base::FileDescriptor m_ending;
    std::thread m_thread;
};

/// Waits until a stop is requested or `seconds` have passed (for ever when negative).
void waitFor(double seconds, const std::stop_token& stop);

} // namespace vantro::app::cli
