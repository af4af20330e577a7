#pragma once

#include "app/flows/MainTimers.h"

#include <QObject>
#include <functional>
#include <memory>

namespace vantro::app::flows {

/// The observable answer to one question: may this application record the screen? Asks again every
/// 2 s, so that a right that is granted or taken while the application runs shows without a
/// restart. Equal answers tell nobody. Main thread.
class PermissionService : public QObject {
    Q_OBJECT

  public:
    /// Says whether recording is allowed, without showing anything to the user.
    using Preflight = std::function<bool()>;

    PermissionService(MainTimers& timers, Preflight preflight);

    bool screenRecordingGranted() const { return m_granted; }
    /// Takes an answer that came another way, such as from asking the user.
    void setScreenRecordingGranted(bool granted);

    void startPolling();
    void stopPolling() { m_pollTimer.reset(); }

  Q_SIGNALS:
    void screenRecordingGrantedChanged();

  private:
    MainTimers& m_timers;
    Preflight m_preflight;
    bool m_granted = false;
    std::unique_ptr<MainTimer> m_pollTimer;
};

} // namespace vantro::app::flows
