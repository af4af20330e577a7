#pragma once

#include "media/values/RawPicture.h"

#include <optional>
#include <span>

namespace vantro::capture::camera {

/// Sizes and rates, each from the first to the last; where both are the same there is one.
struct CameraFormat {
    media::RawLayout layout{};
    int width = 0; ///< pixels
    int height = 0;
    int mostWidth = width;
    int mostHeight = height;
    double rate = 0; ///< pictures a second
    double highestRate = rate;
    bool operator==(const CameraFormat&) const = default;
};

/// One of what a camera offers, with one size and one rate: among those that run fluently, if there
/// are any, the nearest to 640 × 480, at the highest rate up to 60, and then the one that costs
/// least. Nothing where there is nothing to choose from. A pure function.
std::optional<CameraFormat> chooseFormat(std::span<const CameraFormat> offered);

} // namespace vantro::capture::camera
