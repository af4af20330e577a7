#include "app/cli/InstallAdvice.h"

#include <algorithm>
#include <ranges>
#include <string_view>

namespace vantro::app::cli {
namespace {

/// The desktop's own, else the one that compositors built on wlroots share.
std::string portalBackend(std::string_view desktops) {
    for (const auto part : std::views::split(desktops, ':')) {
        const std::string_view name(part.begin(), part.end());
        if (name == "GNOME")
            return "xdg-desktop-portal-gnome";
        if (name == "KDE")
            return "xdg-desktop-portal-kde";
    }
    return "xdg-desktop-portal-wlr";
}

} // namespace

std::vector<InstallAdvice> installAdvice(const Surroundings& found) {
    std::vector<InstallAdvice> advice;
    if (found.isWayland && !found.canRecordScreens)
        advice.push_back(
            {.packages = "pipewire wireplumber xdg-desktop-portal " + portalBackend(found.desktop),
             .purpose = "to record the screen on Wayland"});
    if (found.isWayland && !found.hasClickService)
        advice.push_back({.packages = "vantro-clicks", .purpose = "to have clicks on Wayland"});
    if (!found.hasSoundServer)
        advice.push_back({.packages = "pipewire-pulse", .purpose = "to record sound"});
    return advice;
}

bool isClickServiceInstalled(const std::vector<std::filesystem::path>& dataFolders) {
    return std::ranges::any_of(dataFolders, [](const std::filesystem::path& folder) {
        std::error_code ignored;
        return std::filesystem::exists(folder / "dbus-1/system-services/com.vantro.Clicks1.service",
                                       ignored);
    });
}

} // namespace vantro::app::cli
