#pragma once

#include "export/ComposedMovie.h"

#include <optional>
#include <vector>

namespace vantro::exporting {

/// The camera and the cursor at one output time; positions in video pixels.
struct KeyframeSample {
    double outputTime = 0;
    double sourceTime = 0;
    render::ZoomKeyframe keyframe;
    std::optional<double> cursorX;
    std::optional<double> cursorY;
};

/// What a project comes to: lengths in seconds, sizes in pixels (canvas at the original
/// resolution).
struct Inspection {
    double sourceDuration = 0;
    double outputDuration = 0;
    model::Size videoSize;
    model::Size canvasSize;
    std::vector<model::TimelineSegment> segments;
    std::vector<model::ClickEvent> clickEvents;
    std::vector<KeyframeSample> keyframes;
};

/// `keyframesPerSecond` 0 takes no samples. Throws VantroError as an export would.
Inspection inspect(const model::Recording& recording, const model::Edit& edit,
                   int keyframesPerSecond);

} // namespace vantro::exporting
