#include "ui/platform/Appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QPalette>

namespace vantro::ui {
namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString schemeKey = QStringLiteral("color-scheme");
constexpr uint prefersDark = 1;
constexpr uint prefersLight = 2;

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::WindowText).lightness() >
           palette.color(QPalette::Window).lightness();
}

QPalette nativePalette(bool dark) {
    const QColor window(dark ? "#232325" : "#f6f6f7");
    const QColor base(dark ? "#1b1b1d" : "#ffffff");
    const QColor text(dark ? "#ececee" : "#1d1d1f");
    QPalette palette(text, window, window.lighter(dark ? 160 : 100), window.darker(130),
                     window.darker(110), text, base);
    palette.setColor(QPalette::Button, QColor(dark ? "#37373a" : "#ffffff"));
    palette.setColor(QPalette::Highlight, QColor(dark ? "#1b7f5e" : "#157f5c"));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, QColor("#8a8a8f"));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor("#8a8a8f"));
    return palette;
}

} // namespace

Appearance::Appearance(const Preferences& preferences)
    : m_preferences(preferences)
    , m_paletteIsDark(vantro::ui::isDark(QGuiApplication::palette()))
    , m_desktopIsDark(m_paletteIsDark) {
    connect(&preferences, &Preferences::themeChanged, this, &Appearance::update);
    askPortal();
    update();
}

void Appearance::askPortal() {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"),
                this, SLOT(portalSettingChanged(QString, QString, QDBusVariant)));
    auto request = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface,
                                                  QStringLiteral("Read"));
    request << appearanceGroup << schemeKey;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(request), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid()) // the value lies in two variants, one in the other
            setDesktopColorScheme(reply.value().variant().value<QDBusVariant>().variant().toUInt());
        watcher->deleteLater();
    });
}

void Appearance::portalSettingChanged(const QString& group, const QString& key,
                                      const QDBusVariant& value) {
    if (group == appearanceGroup && key == schemeKey)
        setDesktopColorScheme(value.variant().toUInt());
}

void Appearance::setDesktopColorScheme(uint scheme) {
    if (scheme == prefersDark || scheme == prefersLight)
        m_desktopIsDark = scheme == prefersDark;
    update();
}

void Appearance::update() {
    const auto chosen = m_preferences.theme();
    const bool dark = chosen == ThemeChoice::system ? m_desktopIsDark : chosen == ThemeChoice::dark;
    QGuiApplication::setPalette(dark == m_paletteIsDark ? QPalette() : nativePalette(dark));
    if (m_dark == dark)
        return;
    m_dark = dark;
    Q_EMIT darkChanged();
}

} // namespace vantro::ui
