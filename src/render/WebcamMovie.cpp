#include "render/WebcamMovie.h"

#include "base/Log.h"
#include "media/FrameSource.h"
#include "media/MediaError.h"

#include <cmath>

namespace vantro {
namespace {

/// Fine enough that no frame is missed by rounding a time to it.
constexpr std::int32_t timescale = 1'000'000;

} // namespace

struct WebcamMovie::Opened {
    MediaTime firstFrame;
    FrameSource frames;
};

WebcamMovie::WebcamMovie(const std::filesystem::path& movie) {
    try {
        m_opened = open(movie);
    } catch (const MediaError& error) {
        logWarning("The webcam is left out: {}", error.what());
    }
}

std::unique_ptr<WebcamMovie::Opened> WebcamMovie::open(const std::filesystem::path& movie) {
    const auto asset = Asset::open(movie);
    const auto tracks = asset.tracks(MediaType::video);
    if (tracks.empty())
        throw MediaError(movie.string() + ": No video track found");
    FrameSource frames(asset, tracks.front().id);
    const auto first = frames.frameAt(MediaTime{});
    if (!first)
        throw MediaError(movie.string() + ": no frame in it");
    return std::make_unique<Opened>(Opened{first->presentationTime, std::move(frames)});
}

WebcamMovie::~WebcamMovie() = default;

std::shared_ptr<const PixelBuffer> WebcamMovie::pictureAt(double seconds) try {
    const auto time = std::isfinite(seconds) ? MediaTime::fromSeconds(seconds, timescale)
                                             : MediaTime{-1, timescale};
    if (!m_opened || time < m_opened->firstFrame.rescaled(timescale))
        return nullptr;
    const auto frame = m_opened->frames.frameAt(time);
    return frame ? frame->pixels : nullptr;
} catch (const MediaError& error) {
    logWarning("The webcam is left out from {:.3f} s on: {}", seconds, error.what());
    m_opened.reset();
    return nullptr;
}

} // namespace vantro
