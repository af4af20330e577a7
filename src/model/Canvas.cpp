#include "model/Canvas.h"

#include <algorithm>
#include <cmath>

namespace vantro::model {
namespace {

double evenBelow(double value) {
    return std::floor(value * 0.5) * 2;
}

} // namespace

std::string_view rawValue(CanvasAspectRatio aspect) {
    switch (aspect) {
    case CanvasAspectRatio::automatic:
        return "Auto";
    case CanvasAspectRatio::ratio16x9:
        return "16:9";
    case CanvasAspectRatio::ratio4x3:
        return "4:3";
    case CanvasAspectRatio::ratio1x1:
        return "1:1";
    case CanvasAspectRatio::ratio9x16:
        return "9:16";
    }
    return {};
}

std::optional<double> targetRatio(CanvasAspectRatio aspect, Size videoSize) {
    switch (aspect) {
    case CanvasAspectRatio::ratio16x9:
        return 16.0 / 9.0;
    case CanvasAspectRatio::ratio4x3:
        return 4.0 / 3.0;
    case CanvasAspectRatio::ratio1x1:
        return 1.0;
    case CanvasAspectRatio::ratio9x16:
        return 0.5625;
    case CanvasAspectRatio::automatic:
        break;
    }
    if (!(videoSize.width > 0) || !(videoSize.height > 0))
        return std::nullopt;
    return videoSize.width / videoSize.height;
}

Size canvasSize(CanvasAspectRatio aspect, Size videoSize) {
    const auto ratio = targetRatio(aspect, videoSize);
    if (aspect == CanvasAspectRatio::automatic || !ratio)
        return videoSize;
    auto canvas = videoSize;
    if (videoSize.width / videoSize.height < *ratio)
        canvas.width = *ratio * videoSize.height;
    else
        canvas.height = videoSize.width / *ratio;
    return {.width = evenBelow(canvas.width), .height = evenBelow(canvas.height)};
}

} // namespace vantro::model
