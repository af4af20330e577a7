#pragma once

#include "base/FileDescriptor.h"

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace vantro::window {

/// Calls back from the event loop when the program is told to end (SIGINT, SIGTERM, SIGHUP). One at
/// a time. Main thread.
class QuitSignals {
  public:
    explicit QuitSignals(std::function<void()> quit);
    ~QuitSignals();
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;

  private:
    base::FileDescriptor m_descriptor;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace vantro::window
