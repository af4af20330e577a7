#include "render/WebcamMovie.h"

#include "base/Log.h"
#include "media/FrameSource.h"
#include "media/values/MediaError.h"

namespace vantro::render {
namespace {

/// Enough to step back by a few pictures.
constexpr std::size_t keptBytes = 12'000'000;

} // namespace

struct WebcamMovie::Opened {
    media::MediaTime firstFrame;
    media::FrameSource frames;
};

WebcamMovie::WebcamMovie(const std::filesystem::path& movie) {
    try {
        m_opened = open(movie);
    } catch (const media::MediaError& error) {
        base::logWarning("The webcam is left out: {}", error.what());
    }
}

std::unique_ptr<WebcamMovie::Opened> WebcamMovie::open(const std::filesystem::path& movie) {
    const auto asset = media::Asset::open(movie, media::TimeZero::fileZero);
    const auto tracks = asset.tracks(media::MediaType::video);
    if (tracks.empty())
        throw media::MediaError(movie.string() + ": No video track found");
    media::FrameSource frames(asset, tracks.front().id);
    frames.setKeptBytes(keptBytes);
    const auto first = frames.frameAt(media::MediaTime{});
    if (!first)
        throw media::MediaError(movie.string() + ": no frame in it");
    return std::make_unique<Opened>(Opened{first->presentationTime, std::move(frames)});
}

WebcamMovie::~WebcamMovie() = default;

std::shared_ptr<const media::PixelBuffer> WebcamMovie::pictureAt(media::MediaTime t) try {
    if (!m_opened || t < m_opened->firstFrame)
        return nullptr;
    const auto frame = m_opened->frames.frameAt(t);
    return frame ? frame->pixels : nullptr;
} catch (const media::MediaError& error) {
    base::logWarning("The webcam is left out from {:.3f} s on: {}", t.seconds(), error.what());
    m_opened.reset();
    return nullptr;
}

} // namespace vantro::render
