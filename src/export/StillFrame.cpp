#include "export/StillFrame.h"

#include "media/FrameSource.h"
#include "media/values/MediaError.h"
#include "model/VantroError.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace vantro::exporting {
namespace {

/// Fine enough that any frame rate's k-th frame is met exactly.
constexpr std::int32_t stillTimescale = 705'600'000;

[[noreturn]] void fail(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::exportFailed, message);
}

} // namespace

std::shared_ptr<const media::PixelBuffer>
composeStillFrame(const model::Recording& recording, const model::Edit& edit,
                  ExportResolution resolution, double time,
                  std::unique_ptr<render::Renderer> renderer) try {
    const auto opened = openRecording(recording, edit);
    const auto size = renderSize(edit, baseSize(resolution, opened.videoSize()));
    const auto movie =
        composeMovie(recording, edit, opened, size,
                     static_cast<int>(recording.metadata().frameRate), std::move(renderer));
    const double duration = movie.composition.duration().seconds();
    if (!std::isfinite(time) || time < 0 || time > duration)
        fail(fmt::format("No frame at {} s: the output runs from 0 to {:.3f} s", time, duration));

    const auto& track = movie.composition.tracks().front();
    const auto requested = media::MediaTime::fromSeconds(time, stillTimescale);
    const auto lastFrame =
        std::max(media::MediaTime{}, track.duration() - media::MediaTime{1, stillTimescale});
    const auto composed = std::min(requested, lastFrame);
    media::FrameSource source(movie.composition.asset(), track.source().id);
    auto frame = source.frameAt(track.sourceTime(composed).value_or(media::MediaTime{}));
    if (!frame)
        fail("No video track found");
    return movie.video.compositor->compose({.compositionTime = composed,
                                            .sourceFrame = std::move(*frame),
                                            .width = movie.video.renderWidth,
                                            .height = movie.video.renderHeight,
                                            .outputFormat = media::PixelFormat::bgra});
} catch (const media::MediaError& error) {
    fail(error.what());
}

} // namespace vantro::exporting
