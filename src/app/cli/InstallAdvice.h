#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vantro::app::cli {

/// What is there of all that packages can bring. A plain record.
struct Surroundings {
    bool isWayland = false;
    std::string desktop;          ///< XDG_CURRENT_DESKTOP, such as "ubuntu:GNOME"
    bool canRecordScreens = true; ///< on Wayland: through the desktop's portal
    bool hasSoundServer = true;
    bool hasClickService = true; ///< vantro-clickd can be started
};

/// Packages, by the names that Debian has for them, and what they are good for.
struct InstallAdvice {
    std::string packages;
    std::string purpose;
    bool operator==(const InstallAdvice&) const = default;
};

/// What would make more possible here; nothing where all is there.
std::vector<InstallAdvice> installAdvice(const Surroundings& found);

/// Whether the system bus knows how to start vantro-clickd, by the files in these data folders.
bool isClickServiceInstalled(const std::vector<std::filesystem::path>& dataFolders);

} // namespace vantro::app::cli
