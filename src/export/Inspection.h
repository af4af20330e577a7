#pragma once

#include "model/Geometry.h"
#include "render/MovieSession.h"

#include <optional>
#include <vector>

namespace vantro::exporting {

/// The camera and the pointer at one time of the film; positions in video pixels.
struct KeyframeSample {
    double outputTime = 0;
    double sourceTime = 0;
    render::ZoomKeyframe keyframe;
    std::optional<render::PixelPoint> pointer;
};

/// What a project comes to: lengths in seconds, sizes in pixels (canvas at the original
/// resolution).
struct Inspection {
    double sourceDuration = 0;
    double outputDuration = 0;
    model::Size videoSize;
    render::PixelSize canvasSize;
    std::vector<KeyframeSample> keyframes;
};

/// `keyframesPerSecond` 0 takes no samples. Throws VantroError as an export would.
Inspection inspect(const render::MovieSession& session, int keyframesPerSecond);

} // namespace vantro::exporting
