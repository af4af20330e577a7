#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariant>
#include <functional>
#include <optional>

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::window {

/// Keeps the desktop from blanking and locking the screen and from suspending while a recording
/// runs: by the portal, else by the screen saver's service, which does not know of suspending.
/// Where there is neither, that is logged and nothing more happens. What has been asked for ends
/// with the connection, too. Main thread.
class IdleInhibitor : public QObject {
  public:
    /// `bus` is the session bus.
    IdleInhibitor(app::AppState& state, QDBusConnection bus);

  private:
    void update();
    void askPortal();
    void askScreenSaver();
    void ask(const QDBusMessage& request,
             const std::function<QDBusMessage(const QVariant& answer)>& releaseOf,
             const std::function<void()>& refused);

    app::AppState& m_state;
    QDBusConnection m_bus;
    bool m_wanted = false;
    int m_request = 0; ///< tells apart the answers of different recordings
    std::optional<QDBusMessage> m_release;
};

} // namespace vantro::window
