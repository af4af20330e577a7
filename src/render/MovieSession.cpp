#include "render/MovieSession.h"

#include "media/values/MediaError.h"
#include "model/Canvas.h"
#include "model/VantroError.h"
#include "render/CompositionBuilder.h"
#include "render/WebcamMovie.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace vantro::render {
namespace {

/// Beyond this side length encoders and memory give out long before a viewer could show it.
constexpr double largestCanvasSide = 16384;

/// Before the end: what begins at the end is not shown any more.
media::MediaTime lastInstant(media::MediaTime duration) {
    const media::Fraction instant(1, 700'000'000); // less than any frame lasts
    return std::max(media::MediaTime{},
                    media::MediaTime::nearestTo(media::Fraction(duration) - instant));
}

[[noreturn]] void fail(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::exportFailed, message);
}

/// What `action` gives; its MediaError becomes a VantroError.
template <typename Action>
decltype(auto) reported(Action&& action) try {
    return action();
} catch (const media::MediaError& error) {
    fail(error.what());
}

media::AssetTrack firstVideoTrack(const media::Asset& asset) {
    auto tracks = asset.tracks(media::MediaType::video);
    if (tracks.empty())
        fail("No video track found");
    return tracks.front();
}

/// The webcam's movie is opened when its first picture is asked for.
ZoomCompositor::WebcamFrames webcamFrames(const model::Recording& recording) {
    if (!recording.metadata().hasWebcam)
        return {};
    return [path = recording.webcamMovie(),
            movie = std::shared_ptr<WebcamMovie>()](media::MediaTime t) mutable {
        if (!movie)
            movie = std::make_shared<WebcamMovie>(path);
        return movie->pictureAt(t);
    };
}

} // namespace

MovieSession::MovieSession(model::Recording recording, model::Edit edit,
                           std::unique_ptr<Renderer> renderer, TimeLine timeLine)
    : m_recording(std::move(recording))
    , m_edit(std::move(edit))
    , m_timeLine(timeLine)
    , m_asset(reported([&] { return media::Asset::open(m_recording.movie()); }))
    , m_videoTrack(firstVideoTrack(m_asset))
    , m_composition(composed(m_edit))
    , m_compositor(
          std::make_shared<ZoomCompositor>(m_recording, videoSize(), m_edit, std::move(renderer))) {
    m_compositor->setWebcam(webcamFrames(m_recording));
}

media::Composition MovieSession::composed(const model::Edit& edit) const {
    return reported([&] {
        return m_timeLine == TimeLine::source
                   ? wholeComposition(m_asset, m_videoTrack)
                   : buildComposition(m_asset, m_videoTrack, edit.segments.list());
    });
}

void MovieSession::setEdit(model::Edit edit) {
    if (m_timeLine == TimeLine::film && !(edit.segments == m_edit.segments))
        m_composition = composed(edit);
    m_compositor->setEdit(edit);
    m_edit = std::move(edit);
}

media::MediaTime MovieSession::sourceTime(media::MediaTime time) const {
    const auto& track = m_composition.tracks().front();
    if (time < media::MediaTime{})
        return track.segments().front().source.start;
    return track.sourceTime(time).value_or(track.segments().back().source.end());
}

PixelSize MovieSession::canvas(model::Size baseSize) const {
    const auto size = model::canvasSize(m_edit.canvasAspectRatio, baseSize);
    const bool drawable = size.width >= 2 && size.height >= 2 && size.width <= largestCanvasSide &&
                          size.height <= largestCanvasSide;
    if (!drawable)
        fail(fmt::format("A canvas of {}x{} pixels cannot be drawn", size.width, size.height));
    return {static_cast<int>(size.width), static_cast<int>(size.height)};
}

/// The system's sound before the microphone's, as recordings write them. Other movies are heard as
/// they are.
std::vector<media::TrackMix> MovieSession::soundMix() const {
    const auto& metadata = m_recording.metadata();
    std::vector<media::TrackMix> mix;
    if (metadata.hasSystemAudio)
        mix.push_back({.volume = static_cast<float>(m_edit.systemAudioVolume)});
    if (metadata.hasMicrophoneAudio)
        mix.push_back({.volume = static_cast<float>(m_edit.microphoneVolume),
                       .noiseReduced = m_edit.microphoneNoiseReduced});
    mix.resize(static_cast<std::size_t>(std::ranges::count(
        m_composition.tracks(), media::MediaType::audio, &media::CompositionTrack::type)));
    return mix;
}

media::VideoComposition MovieSession::video(PixelSize canvas, int frameRate) const {
    media::VideoComposition video;
    video.trackID = m_composition.tracks().front().id();
    video.frameDuration = {1, frameRate};
    video.renderWidth = canvas.width;
    video.renderHeight = canvas.height;
    video.compositor = m_compositor;
    return video;
}

std::shared_ptr<const media::PixelBuffer> MovieSession::still(double time, PixelSize canvas) {
    const double length = duration().seconds();
    if (!std::isfinite(time) || time < 0 || time > length)
        fail(fmt::format("No frame at {} s: {} runs from 0 to {:.3f} s", time,
                         m_timeLine == TimeLine::film ? "the output" : "the recording", length));
    return reported([&] {
        const auto composed = std::min(media::MediaTime::simplestOf(time), lastInstant(duration()));
        const auto source = sourceTime(composed);
        if (!m_frames)
            m_frames.emplace(m_asset, m_videoTrack.id);
        auto frame = m_frames->frameAt(source);
        if (!frame)
            fail("No video track found");
        return m_compositor->compose({.compositionTime = composed,
                                      .sourceTime = source,
                                      .sourceFrame = std::move(*frame),
                                      .width = canvas.width,
                                      .height = canvas.height,
                                      .outputFormat = media::PixelFormat::bgra});
    });
}

} // namespace vantro::render
