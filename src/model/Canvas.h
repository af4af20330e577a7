#pragma once

#include "model/Geometry.h"

#include <array>
#include <optional>
#include <string_view>

namespace vantro::model {

enum class CanvasAspectRatio { automatic, ratio16x9, ratio4x3, ratio1x1, ratio9x16 };

inline constexpr std::array allCanvasAspectRatios{
    CanvasAspectRatio::automatic, CanvasAspectRatio::ratio16x9, CanvasAspectRatio::ratio4x3,
    CanvasAspectRatio::ratio1x1, CanvasAspectRatio::ratio9x16};

/// The label, which is also the JSON form: "Auto", "16:9", "4:3", "1:1", "9:16".
std::string_view rawValue(CanvasAspectRatio aspect);

/// Width ÷ height; for automatic the video's own, nothing while that is unknown (a zero size).
std::optional<double> targetRatio(CanvasAspectRatio aspect, Size videoSize);

/// The output canvas for a video of this size, in pixels. The canvas only ever grows beyond the
/// video, so nothing is cropped; every ratio but automatic gives even dimensions.
Size canvasSize(CanvasAspectRatio aspect, Size videoSize);

} // namespace vantro::model
