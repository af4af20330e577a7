#pragma once

#include "model/Choices.h"
#include "model/Geometry.h"

#include <cstdint>
#include <optional>
#include <string>

namespace vantro::capture {

/// What is recorded beside the screen, the pointer and the clicks.
struct SourceSwitches {
    bool systemSound = false;
    bool microphone = false;
    bool camera = false;
    /// Its name or description; empty for the default one.
    std::string microphoneDevice;
    std::string cameraDevice{}; ///< likewise
    bool operator==(const SourceSwitches&) const = default;
};

/// Pictures a second, at most, unless the user wants fewer.
inline constexpr int usualFrameRate = 60;

/// What a user wants to record, by window or command line; nothing of it has been looked up yet. A
/// plain record.
struct RecordingRequest {
    model::CaptureMode mode = model::CaptureMode::screen;
    /// Absent: the main one in screen mode, else the one that the area or window lies on.
    std::optional<std::uint32_t> displayID{};
    model::Rect area{};                      ///< in area mode: global points, top-left origin
    std::optional<std::uint32_t> windowID{}; ///< in window mode
    /// In window mode without an id: part of the title of the window, in any case of letters.
    std::string windowTitle{};
    /// Where the desktop asks the user itself: an earlier choice does not hold again.
    bool chooseAgain = false;
    int frameRate = usualFrameRate;
    SourceSwitches sources{};
    bool operator==(const RecordingRequest&) const = default;
};

} // namespace vantro::capture
