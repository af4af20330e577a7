#pragma once

#include "model/Geometry.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vantro::capture {

/// A monitor that can be recorded.
struct ShareableDisplay {
    /// The same in every run as long as the monitor keeps its name.
    std::uint32_t displayID = 0;
    std::string name;
    model::Rect frame; ///< global points, top-left origin
    /// Pixels per point, a whole number from 1; 2 where the platform cannot tell.
    double backingScaleFactor = 2.0;
    bool isMain = false;
};

/// A small picture that stands for a window.
struct WindowIcon {
    int width = 0; ///< pixels
    int height = 0;
    std::vector<std::uint32_t> pixels; ///< premultiplied 0xAARRGGBB, row by row from the top
    bool operator==(const WindowIcon&) const = default;
};

/// A window that can be recorded.
struct ShareableWindow {
    std::uint32_t windowID = 0;
    std::string title;
    std::string applicationName;
    /// What tells applications apart: the name that the application gives its windows, else the
    /// path of its executable.
    std::string bundleIdentifier;
    model::Rect frame; ///< with its title bar and borders; global points, top-left origin
    bool isOnScreen = false;
    std::shared_ptr<const WindowIcon> icon = nullptr; ///< null: it gives itself none
};

/// What can be recorded at one moment. A plain record.
struct ShareableContent {
    std::vector<ShareableDisplay> displays; ///< the main one first
    std::vector<ShareableWindow> windows;   ///< in stacking order, the front-most first
};

} // namespace vantro::capture
