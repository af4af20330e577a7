#include "base/IdleThread.h"

#include "base/SerialQueue.h"
#include "base/ThreadPriority.h"

#include <atomic>
#include <chrono>
#include <utility>

namespace vantro::base {
namespace {

/// Enough for one that is let to work; not felt when the program is quit.
constexpr std::chrono::milliseconds patience{30};

std::atomic<int> leftCount = 0;

} // namespace

struct IdleThread::End {
    std::atomic<bool> isReached = false;
    std::binary_semaphore told{0};
};

IdleThread::IdleThread(const std::string& name, bool yields, Work work)
    : m_yields(yields)
    , m_end(std::make_shared<End>())
    , m_thread(
          [name, yields, end = m_end, work = std::move(work)](const std::stop_token& stop) mutable {
              setThreadName(name);
              if (yields)
                  makeThreadIdle();
              work(stop);
              work = {};
              end->isReached = true;
              end->told.release();
          }) {}

IdleThread::~IdleThread() {
    stop();
    if (!m_yields)
        return; // joined by its own destructor
    if (!m_end->told.try_acquire_for(patience))
        ++leftCount;
    m_thread.detach();
}

bool IdleThread::hasEnded() const {
    return m_end->isReached;
}

bool IdleThread::areLeft() {
    return leftCount > 0;
}

} // namespace vantro::base
