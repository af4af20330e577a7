#pragma once

#include <functional>
#include <thread>

#include <sdbus-c++/sdbus-c++.h>

namespace vantro::bus {

/// Handles what arrives on a connection, on a thread of its own, for as long as it lives. A bus that
/// goes away is logged, and nothing arrives any more. The connection outlives it. Not destroyed on
/// its own thread.
class EventLoop {
  public:
    /// `lost` is called on the loop's thread when the bus has gone.
    EventLoop(sdbus::IConnection& connection, const char* threadName,
              std::function<void()> lost = {});
    ~EventLoop();
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;

  private:
    sdbus::IConnection& m_connection;
    std::jthread m_thread;
};

} // namespace vantro::bus
