#pragma once

#include "export/ExportResolution.h"
#include "media/values/VideoQuality.h"
#include "model/Edit.h"

#include <cstdint>
#include <optional>

namespace vantro::editor {

/// What an export is judged by before it runs.
struct ExportMeasure {
    model::Edit edit;
    double sourceDuration = 0;     ///< seconds
    std::uint64_t sourceBytes = 0; ///< of the recorded movie
    model::Size videoSize;         ///< of the recording, pixels
    bool hasSound = false;
    bool isGif = false;
    exporting::ExportResolution resolution = exporting::ExportResolution::original;
    media::VideoQuality quality = media::VideoQuality::fast;
};

/// About how large the file becomes, bytes; 0 where nothing is known of the recording.
///
/// The recording's own rate tells how much moves in it, the zooms how long the camera moves, which
/// costs far more. Films of pages, a demonstration and video took 0.6 to 1.3 times the answer,
/// wholly still ones less.
std::uint64_t estimatedBytes(const ExportMeasure& measure);

/// How long an export goes on that took `elapsed` seconds for this fraction; nothing while that
/// says little.
std::optional<double> secondsLeft(double fraction, double elapsed);

} // namespace vantro::editor
