#include "export/ComposedMovie.h"

#include "media/values/MediaError.h"
#include "model/VantroError.h"
#include "render/CompositionBuilder.h"
#include "render/WebcamMovie.h"
#include "render/ZoomCompositor.h"

#include <fmt/format.h>

namespace vantro::exporting {
namespace {

/// Beyond this side length encoders and memory give out long before a viewer could show it.
constexpr double largestCanvasSide = 16384;

[[noreturn]] void fail(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::exportFailed, message);
}

media::AssetTrack firstVideoTrack(const media::Asset& asset) {
    auto tracks = asset.tracks(media::MediaType::video);
    if (tracks.empty())
        fail("No video track found");
    return tracks.front();
}

/// Records hold points; the animator and the renderer work in video pixels.
std::vector<model::ClickEvent> inPixels(std::vector<model::ClickEvent> clicks,
                                        double pixelsPerPoint) {
    for (auto& click : clicks) {
        click.x *= pixelsPerPoint;
        click.y *= pixelsPerPoint;
    }
    return clicks;
}

void configureWebcam(render::ZoomCompositor& compositor, const model::Recording& recording,
                     const model::Edit& edit) {
    if (!recording.metadata().hasWebcam || edit.webcamHidden)
        return;
    const auto movie = std::make_shared<render::WebcamMovie>(recording.webcamMovie());
    compositor.setWebcam([movie](double t) { return movie->pictureAt(t); }, edit.webcamPosition,
                         edit.webcamSize);
}

} // namespace

OpenedRecording openRecording(const model::Recording& recording, const model::Edit& edit) try {
    auto asset = media::Asset::open(recording.movie());
    auto track = firstVideoTrack(asset);
    render::SegmentTimeMap timeMap(edit.segments, asset.duration().seconds());
    auto animator = std::make_shared<const render::ZoomAnimator>(
        inPixels(edit.clickEvents, recording.metadata().displayScaleFactor), track.naturalSize);
    return {std::move(asset), std::move(track), std::move(timeMap), std::move(animator)};
} catch (const media::MediaError& error) {
    fail(error.what());
}

model::Size renderSize(const model::Edit& edit, model::Size baseSize) {
    const auto size = model::canvasSize(edit.canvasAspectRatio, baseSize);
    const bool drawable = size.width >= 2 && size.height >= 2 && size.width <= largestCanvasSide &&
                          size.height <= largestCanvasSide;
    if (!drawable)
        fail(fmt::format("A canvas of {}x{} pixels cannot be drawn", size.width, size.height));
    return size;
}

ComposedMovie composeMovie(const model::Recording& recording, const model::Edit& edit,
                           const OpenedRecording& opened, model::Size renderSize, int frameRate,
                           std::unique_ptr<render::Renderer> renderer) {
    auto composition = render::buildComposition(opened.asset, opened.videoTrack, edit.segments);
    auto compositor = std::make_shared<render::ZoomCompositor>(std::move(renderer));
    compositor->setAnimator(opened.animator);
    compositor->setBackgroundSettings(edit.background);
    compositor->setTimeMapper([map = opened.timeMap](double t) { return map.sourceTime(t); });
    compositor->setCursor(recording.metadata().cursorPositions,
                          recording.metadata().displayScaleFactor, edit.cursorScale);
    configureWebcam(*compositor, recording, edit);
    auto video =
        render::buildVideoComposition(composition, frameRate, static_cast<int>(renderSize.width),
                                      static_cast<int>(renderSize.height), std::move(compositor));
    return {std::move(composition), std::move(video)};
}

} // namespace vantro::exporting
