#include "window/kwin/KWinDesk.h"

#include "support/Eventually.h"
#include "support/Program.h"

#include <QDataStream>
#include <QIODevice>
#include <QVariantMap>
#include <filesystem>
#include <stdexcept>

#include <sdbus-c++/sdbus-c++.h>

namespace vantro::test {
namespace {

constexpr const char* program = "/usr/bin/kwin_wayland";
constexpr const char* portalPart = "/usr/lib/x86_64-linux-gnu/libexec/xdg-desktop-portal-kde";

using Values = std::map<std::string, sdbus::Variant>;

/// KWin's number of it, as its search for windows tells it: "0_{...}".
std::string numberOf(sdbus::IConnection& bus, const std::string& title) {
    using Match =
        sdbus::Struct<std::string, std::string, std::string, std::int32_t, double, Values>;
    std::vector<Match> matches;
    sdbus::createProxy(bus, "org.kde.KWin", "/WindowsRunner")
        ->callMethod("Match")
        .onInterface("org.kde.krunner1")
        .withArguments(title)
        .storeResultsTo(matches);
    return matches.empty() ? "" : matches.front().get<0>().substr(2);
}

/// As KDE's part of the portal has a choice stored.
sdbus::Variant choiceOf(const std::string& number) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    stream << QVariantMap{{QStringLiteral("windows"), QStringList{QString::fromStdString(number)}}};
    const std::vector<std::uint8_t> payload(bytes.begin(), bytes.end());
    return sdbus::Variant(sdbus::Struct<std::string, std::uint32_t, sdbus::Variant>(
        "KDE", 1, sdbus::Variant(payload)));
}

} // namespace

bool KWinDesk::isInstalled() {
    // Qt's parts for Wayland: KDE's portal has the older Qt.
    const std::filesystem::path libraries = "/usr/lib/x86_64-linux-gnu";
    const char* const plugin = "plugins/platforms/libqwayland-generic.so";
    return WaylandDesk::isInstalled() && std::filesystem::exists(program) &&
           std::filesystem::exists(portalPart) &&
           std::filesystem::exists(libraries / "qt5" / plugin) &&
           std::filesystem::exists(libraries / "qt6" / plugin);
}

KWinDesk::KWinDesk(WaylandDesk& session) : m_session(session) {
    m_environment.set("KWIN_COMPOSE", "O2");
    m_environment.set("LIBGL_ALWAYS_SOFTWARE", "1");
    m_environment.set("KWIN_WAYLAND_NO_PERMISSION_CHECKS", "1");
    m_environment.set("QT_QPA_PLATFORM", "");
    // A copy has none of the privileges of the file, which sandboxes do not grant.
    const auto copy = m_session.folder() / "kwin_wayland";
    std::filesystem::copy_file(program, copy);
    m_kwin = startProgram({copy, "--virtual", "--width", "1280", "--height", "720", "--socket",
                           "wayland-kwin", "--no-lockscreen", "--no-global-shortcuts"});
    const auto socket = m_session.folder() / "runtime" / "wayland-kwin";
    if (!eventually([&] { return std::filesystem::exists(socket); }))
        throw std::runtime_error("KWin does not start");
    m_environment.set("WAYLAND_DISPLAY", "wayland-kwin");
    m_environment.set("QT_QPA_PLATFORM", "wayland");
    m_session.startPortal("org.freedesktop.impl.portal.desktop.kde",
                          {"env", "XDG_CURRENT_DESKTOP=KDE", portalPart});
}

KWinDesk::~KWinDesk() {
    m_session.endPortal();
    if (m_kwin > 0)
        endProgram(m_kwin);
}

std::string KWinDesk::grant(const std::string& title) {
    constexpr const char* token = "5f0c5b3e-0a5e-4c7e-9d0a-3d5a4c1b2e6f";
    const auto bus = sdbus::createSessionBusConnection();
    const auto number = numberOf(*bus, title);
    if (number.empty())
        return {};
    const std::map<std::string, std::vector<std::string>> anyone{{"", {"yes"}}};
    sdbus::createProxy(*bus, "org.freedesktop.impl.portal.PermissionStore",
                       "/org/freedesktop/impl/portal/PermissionStore")
        ->callMethod("Set")
        .onInterface("org.freedesktop.impl.portal.PermissionStore")
        .withArguments("screencast", true, token, anyone, choiceOf(number));
    return token;
}

} // namespace vantro::test
