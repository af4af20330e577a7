#pragma once

#include "capture/RecordingTarget.h"

#include <optional>
#include <string>

namespace vantro::app::cli {

/// What the options of a recording name.
struct RecordingSelection {
    std::string mode = "screen";            ///< raw value of a CaptureMode
    std::optional<std::uint32_t> displayID; ///< absent: the main display
    std::string rect;                       ///< "X,Y,W,H" in global points; empty: not given
    std::optional<std::uint32_t> windowID;
    std::string windowTitle; ///< part of a window's title, in any case; empty: not given
};

/// Four finite numbers between commas.
std::optional<model::Rect> parseRect(const std::string& text);

/// Finds what is selected in `content`. Throws VantroError: captureStartFailed "Display not found"
/// or "No window selected", or invalidSelection for an area without a pixel on any display. An area
/// that reaches beyond the displays is clipped to them.
capture::RecordingChoice chooseRecording(const RecordingSelection& selection,
                                         const capture::ShareableContent& content);

} // namespace vantro::app::cli
