#include "bus/EventLoop.h"

#include "base/Log.h"
#include "base/SerialQueue.h"

#include <utility>

namespace vantro::bus {

EventLoop::EventLoop(sdbus::IConnection& connection, const char* threadName,
                     std::function<void()> lost)
    : m_connection(connection)
    , m_thread([&connection, threadName, lost = std::move(lost)] {
        base::setThreadName(threadName);
        try {
            connection.enterEventLoop();
        } catch (const sdbus::Error& error) {
            base::logWarning("The bus is lost: {}", error.getMessage());
            if (lost)
                lost();
        }
    }) {}

EventLoop::~EventLoop() {
    m_connection.leaveEventLoop();
}

} // namespace vantro::bus
