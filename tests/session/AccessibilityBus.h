#pragma once

#include "session/Accessible.h"
#include "window/DesktopSession.h"

namespace vantro::test {

/// The accessibility service of a desktop, on a session bus of its own: what a screen reader is
/// connected to. Programs that are started on the desktop from then on tell it what they show.
class AccessibilityBus {
  public:
    /// Throws std::runtime_error when the service does not start.
    explicit AccessibilityBus(DesktopSession& desktop);
    ~AccessibilityBus();
    AccessibilityBus(const AccessibilityBus&) = delete;
    AccessibilityBus& operator=(const AccessibilityBus&) = delete;

    /// The first one, in reading order, that is not hidden; null without one.
    Accessible find(const QString& role, const QRegularExpression& name) const;
    /// All that the programs show, for the message of a failed test.
    std::string everything() const;

  private:
    Accessible root() const;

    QProcess m_daemon;
    QDBusConnection m_connection{QString()};
};

} // namespace vantro::test
