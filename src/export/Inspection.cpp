#include "export/Inspection.h"

namespace vantro::exporting {

Inspection inspect(const render::MovieSession& session, int keyframesPerSecond) {
    Inspection found{.sourceDuration = session.sourceDuration(),
                     .outputDuration = session.duration().seconds(),
                     .videoSize = session.videoSize(),
                     .canvasSize = session.canvas(session.videoSize()),
                     .keyframes = {}};
    if (keyframesPerSecond <= 0)
        return found;
    const auto& motion = session.motion();
    const auto count = static_cast<std::int64_t>(found.outputDuration * keyframesPerSecond) + 1;
    found.keyframes.reserve(static_cast<std::size_t>(count));
    for (std::int64_t index = 0; index < count; ++index) {
        const media::MediaTime time{index, keyframesPerSecond};
        const double sourceTime = session.sourceTime(time).seconds();
        found.keyframes.push_back({.outputTime = time.seconds(),
                                   .sourceTime = sourceTime,
                                   .keyframe = motion.camera(sourceTime),
                                   .pointer = motion.pointer(sourceTime)});
    }
    return found;
}

} // namespace vantro::exporting
