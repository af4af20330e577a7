#pragma once

#include "capture/ScreenStream.h"
#include "capture/ShareableContent.h"
#include "model/Choices.h"

#include <cstdint>
#include <optional>

namespace vantro::capture {

/// What the user chose to record.
struct RecordingChoice {
    model::CaptureMode captureMode = model::CaptureMode::screen;
    std::uint32_t displayID = 0;
    model::Rect captureRect; ///< global points, top-left origin
    std::optional<ShareableWindow> selectedWindow;
};

/// How a choice is captured: what the stream shows, at which size.
struct RecordingTarget {
    ShareableDisplay display;
    ContentFilter filter;
    ScreenStreamConfiguration stream;
};

/// The windows of the application with this identifier are never recorded: it is our own.
inline constexpr const char* ownBundleIdentifier = "com.vantro.app";

/// The part of an area that lies inside of the smallest rectangle around all displays. Throws
/// VantroError invalidSelection when nothing is left.
model::Rect clippedArea(model::Rect area, const ShareableContent& content);

/// Throws VantroError captureStartFailed, "Display not found" or "No window selected", and
/// invalidSelection for an area without pixels.
RecordingTarget resolveTarget(const RecordingChoice& choice, const ShareableContent& content);

} // namespace vantro::capture
