#include "support/WaylandDesk.h"

#include "support/Eventually.h"
#include "support/Program.h"
#include "support/SessionBus.h"

#include <algorithm>
#include <array>
#include <stdexcept>
namespace vantro::test {
namespace {

constexpr const char* portalProgram = "/usr/libexec/xdg-desktop-portal";
constexpr const char* permissionStore = "/usr/libexec/xdg-permission-store";

bool isOnBus(const std::string& name) {
    return succeeds("dbus-send --session --print-reply --dest=org.freedesktop.DBus / "
                    "org.freedesktop.DBus.NameHasOwner string:" +
                    name + " | grep -q 'boolean true'");
}

} // namespace

bool WaylandDesk::isInstalled() {
    return succeeds("command -v pipewire && command -v wireplumber && command -v dbus-daemon && "
                    "command -v dbus-send && command -v pw-cli") &&
           std::filesystem::exists(portalProgram) && std::filesystem::exists(permissionStore);
}

WaylandDesk::WaylandDesk() {
    const auto path = m_folder.path().string();
    const auto bus = "unix:path=" + path + "/runtime/bus";
    for (const auto* name : {"runtime", "config", "state", "cache", "data", "home"})
        std::filesystem::create_directories(m_folder / name);
    std::filesystem::permissions(m_folder / "runtime", std::filesystem::perms::owner_all);
    m_folder.write("bus.conf", busConfiguration(bus));
    const std::array<std::pair<const char*, std::string>, 15> wanted{{
        {"XDG_RUNTIME_DIR", path + "/runtime"},
        {"XDG_CONFIG_HOME", path + "/config"},
        {"XDG_STATE_HOME", path + "/state"},
        {"XDG_CACHE_HOME", path + "/cache"},
        {"XDG_DATA_HOME", path + "/data"},
        {"HOME", path + "/home"},
        {"XDG_CURRENT_DESKTOP", "scripted"},
        {"XDG_DESKTOP_PORTAL_DIR", path + "/portals"},
        {"DBUS_SESSION_BUS_ADDRESS", bus},
        {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent"},
        {"GSETTINGS_BACKEND", "memory"},
        {"WAYLAND_DISPLAY", "wayland-none"},
        {"PIPEWIRE_REMOTE", ""},
        {"PULSE_SERVER", ""},
        {"DISPLAY", ""},
    }};
    for (const auto& [name, value] : wanted)
        m_environment.set(name, value);
    m_programs.push_back(
        launch({"dbus-daemon", "--config-file=" + path + "/bus.conf", "--nofork"}));
    if (!eventually([] { return isOnBus("org.freedesktop.DBus"); }))
        throw std::runtime_error("no private bus");
    startPipeWire();
}

WaylandDesk::~WaylandDesk() {
    endPortal();
    std::ranges::reverse(m_programs);
    for (const pid_t program : m_programs)
        if (program > 0)
            endProgram(program, SIGKILL);
}

pid_t WaylandDesk::launch(std::vector<std::string> command) {
    return startProgram(std::move(command));
}

void WaylandDesk::startPortal(const PortalScript& script) {
    m_backend = std::make_unique<PortalBackend>(script);
    startFrontEnd(PortalBackend::name,
                  std::string("org.freedesktop.impl.portal.ScreenCast;"
                              "org.freedesktop.impl.portal.Access;") +
                      (script.hasKeys ? "org.freedesktop.impl.portal.GlobalShortcuts;" : ""));
}

void WaylandDesk::startPortal(const std::string& name, std::vector<std::string> program) {
    m_portal.push_back(launch(std::move(program)));
    // Some have their name before they can answer, and one that is asked then answers only when it
    // is asked again.
    const auto question = "dbus-send --session --print-reply --reply-timeout=300 --dest=" + name +
                          " /org/freedesktop/portal/desktop org.freedesktop.DBus.Properties.Get "
                          "string:org.freedesktop.impl.portal.ScreenCast "
                          "string:AvailableSourceTypes";
    if (!eventually([&] { return succeeds(question); }))
        throw std::runtime_error("the desktop's part of the portal does not start");
    startFrontEnd(name, "org.freedesktop.impl.portal.ScreenCast;");
}

void WaylandDesk::startFrontEnd(const std::string& backendName, const std::string& interfaces) {
    m_folder.write("portals/scripted.portal", "[portal]\nDBusName=" + backendName +
                                                  "\nInterfaces=" + interfaces +
                                                  "\nUseIn=scripted\n");
    m_portal.push_back(launch({permissionStore}));
    m_portal.push_back(launch({portalProgram, "-r"}));
    if (!eventually([] { return isOnBus("org.freedesktop.portal.Desktop"); }))
        throw std::runtime_error("the portal does not start");
}

void WaylandDesk::endPortal() {
    for (const pid_t program : std::exchange(m_portal, {}))
        endProgram(program, SIGKILL);
    m_backend.reset();
}

void WaylandDesk::startPipeWire() {
    m_pipeWire = launch({"pipewire"});
    m_programs.push_back(m_pipeWire);
    if (!eventually([] { return succeeds("timeout 2 pw-cli info 0"); }))
        throw std::runtime_error("no private PipeWire");
    m_sessionManager = launch({"wireplumber"});
    m_programs.push_back(m_sessionManager);
    if (!eventually([] { return succeeds("timeout 2 pw-cli ls Client | grep -q WirePlumber"); }))
        throw std::runtime_error("PipeWire's session manager does not start");
}

void WaylandDesk::crashPipeWire() {
    for (const pid_t program : {m_pipeWire, m_sessionManager}) {
        std::erase(m_programs, program);
        endProgram(program, SIGKILL);
    }
}

} // namespace vantro::test
