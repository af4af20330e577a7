#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <functional>

class QDBusPendingCallWatcher;

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::app::flows {
class RecordingFlow;
} // namespace vantro::app::flows

namespace vantro::window {

/// A quiet notification with buttons to stop and to pause while a recording is under way, for
/// desktops without a tray. Where there is no notification service, nothing. Main thread.
class StopNotice : public QObject {
    Q_OBJECT

  public:
    /// `bus` is the session bus. Both others outlive this.
    StopNotice(app::AppState& state, app::flows::RecordingFlow& flow, QDBusConnection bus,
               std::function<bool()> hasTray);
    ~StopNotice() override;

    /// Whether there is a service for it, which may have to be started yet.
    static bool isPossible(const QDBusConnection& bus);

  private Q_SLOTS:
    void chosen(uint notice, const QString& action);

  private:
    void update();
    void show();
    QDBusMessage notice() const;
    void close(uint notice);

    app::AppState& m_state;
    app::flows::RecordingFlow& m_flow;
    QDBusConnection m_bus;
    const std::function<bool()> m_hasTray;
    bool m_isWanted = false;
    int m_request = 0; ///< tells apart the answers of different recordings
    uint m_notice = 0; ///< the service's number; 0: none is shown
};

} // namespace vantro::window
