#include "window/sway/SwayDesk.h"

#include "support/Eventually.h"
#include "support/Program.h"

#include <unistd.h>

namespace vantro::test {
namespace {

constexpr const char* configuration = "xwayland disable\n"
                                      "default_border none\n"
                                      "output HEADLESS-1 mode 1280x720@60Hz position 0 0\n"
                                      "output HEADLESS-2 mode 1280x720@60Hz position 1280 0\n";

/// Of sway's own, in a folder.
std::string socketIn(const std::filesystem::path& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().filename().string().starts_with("sway-ipc."))
            return entry.path();
    return {};
}

} // namespace

bool SwayDesk::isInstalled() {
    return WaylandDesk::isInstalled() && succeeds("command -v sway && command -v swaymsg") &&
           std::filesystem::exists(
               "/usr/lib/x86_64-linux-gnu/qt6/plugins/platforms/libqwayland-generic.so");
}

SwayDesk::SwayDesk() {
    // NOLINTBEGIN(concurrency-mt-unsafe)
    for (const auto& [name, value] : {std::pair{"WLR_BACKENDS", "headless"},
                                      {"WLR_RENDERER", "pixman"},
                                      {"WLR_LIBINPUT_NO_DEVICES", "1"},
                                      {"WLR_HEADLESS_OUTPUTS", "2"}})
        setenv(name, value, 1);
    std::ofstream(m_session.folder() / "sway.conf") << configuration;
    std::vector<std::string> command{"env",  "-u", "WAYLAND_DISPLAY",
                                     "sway", "-c", m_session.folder() / "sway.conf"};
    // It does not run as root, so root gets a name space in which it is somebody else.
    if (getuid() == 0)
        command.insert(command.begin(),
                       {"unshare", "--user", "--map-user=1000", "--map-group=1000"});
    m_sway = startProgram(std::move(command));
    const auto runtime = m_session.folder() / "runtime";
    if (!eventually([&] { return !socketIn(runtime).empty(); }))
        throw std::runtime_error("sway does not start");
    setenv("SWAYSOCK", socketIn(runtime).c_str(), 1);
    setenv("WAYLAND_DISPLAY", "wayland-1", 1);
    // NOLINTEND(concurrency-mt-unsafe)
    if (!eventually([] { return succeeds("swaymsg -t get_outputs | grep -q HEADLESS-2"); }))
        throw std::runtime_error("sway has no outputs");
}

SwayDesk::~SwayDesk() {
    if (m_sway > 0)
        endProgram(m_sway);
}

bool SwayDesk::tell(const std::string& command) {
    return succeeds("swaymsg -- " + command);
}

} // namespace vantro::test
