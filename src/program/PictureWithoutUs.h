#pragma once

#include <QImage>
#include <cstdint>

namespace vantro::program {

/// What a display shows without our own windows, in its pixels; null when that cannot be had within
/// half a second. Blocks for as long as a recording takes to begin. Any thread.
QImage pictureWithoutUs(std::uint32_t displayID);

} // namespace vantro::program
