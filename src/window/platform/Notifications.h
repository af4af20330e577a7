#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <functional>
#include <map>

namespace vantro::window {

/// What the desktop is to show beside whatever the user looks at. A plain record.
struct Notification {
    QString title;
    QString text;                  ///< plain
    QString action{};              ///< of its button; empty: it has none
    std::function<void()> acted{}; ///< called on the main thread when that is pressed
};

/// The desktop's notifications. Where there is no service for them, nothing is shown. Main thread.
class Notifications : public QObject {
    Q_OBJECT

  public:
    /// `bus` is the session bus.
    explicit Notifications(QDBusConnection bus);

    void show(const Notification& notification);

  private Q_SLOTS:
    void chosen(uint notice, const QString& action);
    void closed(uint notice, uint reason);

  private:
    void remember(uint notice, const std::function<void()>& acted);

    QDBusConnection m_bus;
    /// What buttons do, by the service's number: of the last few, since some never tell of an end.
    std::map<uint, std::function<void()>> m_actions;
};

} // namespace vantro::window
