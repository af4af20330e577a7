#pragma once

#include "model/Background.h"
#include "model/Canvas.h"
#include "model/Choices.h"
#include "model/RecordingMetadata.h"
#include "model/TimelineSegment.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vantro::model {

/// A recording with every editing choice, as "project.json" holds it. The defaults are those of a
/// fresh edit.
struct ProjectData {
    static constexpr std::int64_t currentVersion = 1;

    std::int64_t version = currentVersion; ///< read, never compared
    std::string recordingName;
    RecordingMetadata metadata;
    std::vector<ClickEvent> editableClickEvents;
    std::vector<TimelineSegment> segments = fullLengthTimeline();
    BackgroundSettings backgroundSettings;
    CanvasAspectRatio canvasAspectRatio = CanvasAspectRatio::automatic;
    double cursorScale = 3.0;
    WebcamPosition webcamPosition = WebcamPosition::bottomRight;
    double webcamSize = 0.2; ///< fraction of the canvas width
    bool operator==(const ProjectData&) const = default;
};

} // namespace vantro::model
