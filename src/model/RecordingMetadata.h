#pragma once

#include "model/ClickEvent.h"
#include "model/Geometry.h"

#include <cstdint>
#include <vector>

namespace vantro::model {

/// Where the pointer was. Units as in ClickEvent; positions outside the capture rectangle are kept.
struct CursorPosition {
    double x = 0;
    double y = 0;
    double timestamp = 0;
    bool operator==(const CursorPosition&) const = default;
};

/// What was captured: the record that lies beside a recording's movie and inside every project.
struct RecordingMetadata {
    /// A rectangle in points with the JSON keys x, y, width, height.
    using CodableRect = Rect;

    double startTime = 0;    ///< seconds
    double endTime = 0;      ///< seconds; taken as the recording's length
    CodableRect captureRect; ///< global points, top-left origin
    std::uint32_t displayID = 0;
    std::int64_t frameRate = 60;
    double displayScaleFactor = 1;               ///< pixels per point
    std::vector<CursorPosition> cursorPositions; ///< in time order
    std::vector<ClickEvent> clickEvents;         ///< in time order
    bool hasSystemAudio = false;
    bool hasMicrophoneAudio = false;
    bool hasWebcam = false;
    bool operator==(const RecordingMetadata&) const = default;
};

} // namespace vantro::model
