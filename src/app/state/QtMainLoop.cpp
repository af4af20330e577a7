#include "app/state/QtMainLoop.h"

#include "base/SerialQueue.h"

#include <QObject>
#include <QTimer>

namespace vantro {
namespace {

class QtMainTimer : public MainTimer {
  public:
    QtMainTimer(std::chrono::milliseconds interval, std::function<void()> tick) {
        QObject::connect(&m_timer, &QTimer::timeout, std::move(tick));
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.start(interval);
    }

  private:
    QTimer m_timer;
};

} // namespace

std::unique_ptr<MainTimer> QtMainTimers::repeat(std::chrono::milliseconds interval,
                                                std::function<void()> tick) {
    return std::make_unique<QtMainTimer>(interval, std::move(tick));
}

struct QtTaskRunner::Members {
    explicit Members(std::string label) : queue(std::move(label)) {}

    QObject mainThread; // receives the queued calls, and drops them when it goes
    SerialQueue queue;  // goes first
};

QtTaskRunner::QtTaskRunner(std::string label)
    : m_members(std::make_unique<Members>(std::move(label))) {}

QtTaskRunner::~QtTaskRunner() = default;

void QtTaskRunner::run(std::function<Continuation()> work) {
    m_members->queue.async([this, work = std::move(work)] {
        if (auto continuation = work())
            onMain(std::move(continuation));
    });
}

void QtTaskRunner::onMain(Continuation task) {
    QMetaObject::invokeMethod(&m_members->mainThread, std::move(task), Qt::QueuedConnection);
}

} // namespace vantro
