#pragma once

#include "media/values/PixelBuffer.h"

#include <array>
#include <string_view>

namespace vantro::bench {

/// What people record: text that grows letter by letter, a page that scrolls, a film in a window,
/// and a still screen that a camera moves over.
enum class Material { typing, pages, video, zooms };

inline constexpr std::array materialNames{std::string_view("typing"), std::string_view("pages"),
                                          std::string_view("video"), std::string_view("zooms")};

/// Draws the screen as it is at a sixtieth of a second; the same number is the same picture.
/// `screen` is bgra, 1920x1080 pixels.
void drawScreen(Material material, int frame, media::PixelBuffer& screen);

} // namespace vantro::bench
