#include "app/flows/QtMainLoop.h"

#include "base/SerialQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimer>

namespace vantro::app::flows {
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

/// Carries a task to the thread of a TaskReceiver; Qt owns it on the way.
class TaskEvent : public QEvent {
  public:
    explicit TaskEvent(TaskRunner::Continuation task) : QEvent(User), m_task(std::move(task)) {}
    void run() const { m_task(); }

  private:
    TaskRunner::Continuation m_task;
};

/// Runs the tasks that are posted to it; those that are still on the way when it goes are dropped.
class TaskReceiver : public QObject {
  protected:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        static_cast<TaskEvent*>(event)->run();
        return true;
    }
};

} // namespace

std::unique_ptr<MainTimer> QtMainTimers::repeat(std::chrono::milliseconds interval,
                                                std::function<void()> tick) {
    return std::make_unique<QtMainTimer>(interval, std::move(tick));
}

struct QtTaskRunner::Members {
    explicit Members(std::string label) : queue(std::move(label)) {}

    TaskReceiver mainThread; // receives the queued calls, and drops them when it goes
    base::SerialQueue queue; // goes first
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
    QCoreApplication::postEvent(&m_members->mainThread, new TaskEvent(std::move(task)));
}

} // namespace vantro::app::flows
