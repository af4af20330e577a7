#include "support/SwayDesk.h"

#include "support/Eventually.h"
#include "support/Program.h"

#include <fstream>
#include <stdexcept>

#include <unistd.h>

namespace vantro::test {
namespace {

constexpr const char* portalPart = "/usr/libexec/xdg-desktop-portal-wlr";
constexpr const char* plain = "xwayland disable\ndefault_border none\n";
// Windows of a sway keep their size.
constexpr const char* outputs = "for_window [app_id=wlroots] floating enable\n"
                                "output HEADLESS-1 mode 1280x720@60Hz position 0 0\n"
                                "output HEADLESS-2 mode 1280x720@60Hz position 1280 0\n";
constexpr uid_t somebody = 1000;

} // namespace

bool SwayDesk::isInstalled() {
    return WaylandDesk::isInstalled() && succeeds("command -v sway && command -v swaymsg");
}

bool SwayDesk::hasPortal() {
    return std::filesystem::exists(portalPart);
}

SwayDesk::SwayDesk(WaylandDesk& session) : m_session(session) {
    m_environment.set("WLR_RENDERER", "pixman");
    m_environment.set("WLR_LIBINPUT_NO_DEVICES", "1");
    m_environment.set("WLR_HEADLESS_OUTPUTS", "2");
    m_environment.set("WLR_WL_OUTPUTS", "2");
    m_environment.set("WLR_BACKENDS", "headless");
    m_environment.set("WAYLAND_DISPLAY", "");
    start(std::string(plain) + outputs, "HEADLESS-2");
}

SwayDesk::~SwayDesk() {
    m_session.endPortal(); // first: it would not survive
    while (!m_programs.empty()) {
        endProgram(m_programs.back());
        m_programs.pop_back();
    }
}

void SwayDesk::start(const std::string& configuration, const std::string& lastOutput) {
    const auto file = m_session.folder() / ("sway" + std::to_string(m_programs.size()) + ".conf");
    std::ofstream(file) << configuration;
    std::vector<std::string> command{"sway", "-c", file};
    // It does not run as root, so root gets a name space in which it is somebody else.
    const bool isRoot = getuid() == 0;
    const auto user = std::to_string(isRoot ? somebody : getuid());
    if (isRoot)
        command.insert(command.begin(),
                       {"unshare", "--user", "--map-user=" + user, "--map-group=" + user});
    m_programs.push_back(startProgram(std::move(command)));
    m_environment.set("SWAYSOCK",
                      m_session.folder() / "runtime" /
                          ("sway-ipc." + user + "." + std::to_string(m_programs.back()) + ".sock"));
    m_environment.set("WAYLAND_DISPLAY", "wayland-" + std::to_string(m_programs.size()));
    if (!eventually([&] { return succeeds("swaymsg -t get_outputs | grep -q " + lastOutput); }))
        throw std::runtime_error("sway does not start");
}

void SwayDesk::nest() {
    m_hostSocket = std::getenv("SWAYSOCK"); // NOLINT(concurrency-mt-unsafe)
    m_environment.set("WLR_BACKENDS", "wayland");
    start(plain, "WL-2");
}

bool SwayDesk::unplug(const std::string& nestedOutput) {
    return succeeds("swaymsg -s " + m_hostSocket.string() + " -- '[title=\"" + nestedOutput +
                    "\"] kill'");
}

bool SwayDesk::tell(const std::string& command) {
    return succeeds("swaymsg -- " + command);
}

void SwayDesk::startPortal(const std::string& output) {
    const auto settings = m_session.folder() / "portal-wlr.conf";
    std::ofstream(settings) << "[screencast]\nchooser_type=none\noutput_name=" + output;
    const std::string preload = std::string("LD_PRELOAD=") + PIXMAN_SCREENCOPY;
    m_session.startPortal("org.freedesktop.impl.portal.desktop.wlr",
                          {"env", preload, portalPart, "-r", "-c", settings});
}

} // namespace vantro::test
