#pragma once

#include "base/HostClock.h"
#include "capture/RecordingRequest.h"
#include "capture/ShareableContent.h"
#include "media/color/ColorConversion.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace vantro::capture {

/// A part of a picture, in its pixels.
struct PictureCrop {
    media::color::PixelRect part;
    int width = 0; ///< of the whole picture
    int height = 0;
};

/// What a recording shows: the one description that stream, pointer and metadata are made from. A
/// plain record.
struct RecordingTarget {
    model::CaptureMode mode = model::CaptureMode::screen;
    ShareableDisplay display;   ///< that is shown or that the area or window lies on
    model::Rect captureRect;    ///< global points; of a window, where it stood
    std::uint32_t windowID = 0; ///< in window mode
    std::vector<std::uint32_t> excludedWindows; ///< that are not to be seen otherwise
    /// Of what the user has chosen in the desktop's own dialog; all of that where absent.
    std::optional<PictureCrop> crop;
    int width = 0; ///< of the movie: pixels, even; content beyond it is cut off
    int height = 0;
    base::HostDuration minimumFrameInterval{1'000'000'000 / usualFrameRate};
};

/// The windows of the application with this identifier are never recorded: it is our own.
inline constexpr const char* ownBundleIdentifier = "com.vantro.app";

/// The first display that the rectangle touches, else the main one; null without displays.
const ShareableDisplay* displayUnder(const model::Rect& rect,
                                     const std::vector<ShareableDisplay>& displays);

/// Finds what a request names in what a desktop offers. Throws VantroError captureStartFailed,
/// "Display not found" or "No window selected", and invalidSelection for an area without pixels on
/// any display.
RecordingTarget resolveTarget(const RecordingRequest& request, const ShareableContent& content);

/// An area of a target that is the whole of what was chosen: points from its top left corner.
/// Throws VantroError invalidSelection where no pixels of it lie inside.
RecordingTarget cropped(RecordingTarget target, const model::Rect& area);

} // namespace vantro::capture
