#pragma once

#include "ui/Preferences.h"

#include <QDBusVariant>
#include <QObject>

#include <QtQml/qqmlregistration.h>

namespace vantro::ui {

/// Whether the program is drawn dark: what the user chose for it, else what the desktop prefers.
///
/// The desktop's preference comes from the settings portal, which also tells of changes, and until
/// that has answered (or where there is none) from the colors that the platform gave to Qt.
/// Native parts (panels, menus) keep the desktop's own colors unless those are of the other kind.
/// Main thread.
class Appearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool dark READ isDark NOTIFY darkChanged)

  public:
    explicit Appearance(const Preferences& preferences);

    bool isDark() const { return m_dark; }

  Q_SIGNALS:
    void darkChanged();

  private Q_SLOTS:
    void portalSettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

  private:
    void askPortal();
    void setDesktopColorScheme(uint scheme);
    void update();

    const Preferences& m_preferences;
    const bool m_paletteIsDark; ///< of the desktop's own palette
    bool m_desktopIsDark;
    bool m_dark = false;
};

} // namespace vantro::ui
