#include "export/Inspection.h"

#include "render/ZoomCompositor.h"

namespace vantro::exporting {
namespace {

KeyframeSample sampleAt(double outputTime, const model::Recording& recording,
                        const OpenedRecording& opened) {
    KeyframeSample sample;
    sample.outputTime = outputTime;
    sample.sourceTime = opened.timeMap.sourceTime(outputTime);
    sample.keyframe = opened.animator->keyframe(sample.sourceTime);
    if (const auto cursor =
            render::interpolatedCursor(recording.metadata().cursorPositions, sample.sourceTime)) {
        const double pixelsPerPoint = recording.metadata().displayScaleFactor;
        sample.cursorX = cursor->x * pixelsPerPoint;
        sample.cursorY = cursor->y * pixelsPerPoint;
    }
    return sample;
}

} // namespace

Inspection inspect(const model::Recording& recording, const model::Edit& edit,
                   int keyframesPerSecond) {
    const auto opened = openRecording(recording, edit);
    Inspection found{.sourceDuration = opened.timeMap.sourceDuration(),
                     .outputDuration = opened.timeMap.totalDuration(),
                     .videoSize = opened.videoSize(),
                     .canvasSize = renderSize(edit, opened.videoSize()),
                     .segments = edit.segments,
                     .clickEvents = edit.clickEvents,
                     .keyframes = {}};
    if (keyframesPerSecond <= 0)
        return found;
    const auto count = static_cast<std::int64_t>(found.outputDuration * keyframesPerSecond) + 1;
    found.keyframes.reserve(static_cast<std::size_t>(count));
    for (std::int64_t index = 0; index < count; ++index)
        found.keyframes.push_back(
            sampleAt(static_cast<double>(index) / keyframesPerSecond, recording, opened));
    return found;
}

} // namespace vantro::exporting
