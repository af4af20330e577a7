#pragma once

#include "capture/RecordingTarget.h"
#include "capture/x11/server/X11Connection.h"
#include "media/color/ColorConversion.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vantro::capture::x11 {

/// A monitor in the pixels of the X screen.
struct X11Monitor {
    std::uint32_t id = 0; ///< a hash of the monitor's name
    std::string name;
    media::color::PixelRect rect;
};

/// How the X screen's pixels become global points, whose origin is the main monitor's top-left
/// corner.
struct X11Geometry {
    std::vector<X11Monitor> monitors; ///< the main one first; never empty
    int scale = 1;                    ///< pixels per point

    const X11Monitor& main() const { return monitors.front(); }
    const X11Monitor* find(std::uint32_t id) const;
    model::Rect toPoints(media::color::PixelRect rect) const;
};

/// The monitors that RandR tells of; where it tells of none, the whole X screen as one monitor.
X11Geometry queryGeometry(const X11Connection& connection);

/// The pixels of the X screen that a recording of a display or area begins with; the main monitor
/// stands for one that has gone.
media::color::PixelRect capturedArea(const X11Geometry& geometry, const RecordingTarget& target);

std::vector<ShareableDisplay> shareableDisplays(const X11Geometry& geometry);

class X11OwnWindows;

/// The windows that the window manager manages; where none runs, the root's children. Those in
/// `own` carry our own bundle identifier, whatever they call themselves.
std::vector<ShareableWindow> shareableWindows(const X11Connection& connection,
                                              const X11Geometry& geometry, X11OwnWindows& own,
                                              bool withIcons);

} // namespace vantro::capture::x11
