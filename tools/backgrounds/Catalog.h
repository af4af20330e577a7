#pragma once

#include "backgrounds/Canvas.h"

#include <span>
#include <string_view>

namespace vantro::backgrounds {

/// What a lens and film add to a painted scene.
struct Finish {
    /// Share of the light that spills around, and how far, in picture heights.
    float bloom = 0;
    float bloomRadius = 0.03F;
    /// Whether bright light rolls off as on film; else it clips.
    bool film = false;
    /// How much darker the corners are.
    float vignette = 0;
    /// Standard deviation of the grain in 8-bit code values.
    float grain = 0.7F;
    int quality = 92;
};

/// One built-in background.
struct Entry {
    /// The base name of its files.
    std::string_view name;
    /// Prepares what the picture needs as a whole, on `pool`, and returns its painter.
    Painter (*makePainter)(const Frame& frame, base::WorkerPool& pool);
    Finish finish;
    /// Pixels of the finished picture to a painted one, in each direction: above 1 for pictures
    /// without fine detail.
    int coarseness = 1;
};

/// All built-in backgrounds in the order in which they are offered: five wallpapers, each dark then
/// light, then sixteen photographs.
std::span<const Entry> catalog();

/// The finished picture.
Canvas paint(const Entry& entry, const Frame& frame, base::WorkerPool& pool);

} // namespace vantro::backgrounds
