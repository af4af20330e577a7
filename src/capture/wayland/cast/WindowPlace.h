#pragma once

#include "capture/pictures/PictureFit.h"
#include "media/color/ColorConversion.h"

#include <optional>

namespace vantro::capture::wayland {

/// Finds a window again in a larger picture of it. Some desktops make the pictures of a window
/// larger for its menus, and say nothing of where in them the window stands: at one of the corners,
/// with nothing beside it but the menu. Nothing where the window itself has become larger.
///
/// The window's picture is BGRX; `hasAlpha` says whether that of the other tells what is empty,
/// which is black otherwise.
std::optional<media::color::PixelRect> placeOfWindow(const pictures::PictureView& window,
                                                     const pictures::PictureView& larger,
                                                     bool hasAlpha);

} // namespace vantro::capture::wayland
