#include "media/strips/ThumbnailReader.h"

#include "base/Log.h"
#include "media/color/ColorConversion.h"
#include "media/values/MediaError.h"

#include <cmath>

namespace vantro::media::strips {
namespace {

constexpr double mostHeight = 80; // pixels: the bar at twice the usual resolution
constexpr double mostWidth = 320;
constexpr std::int64_t longestSearch = std::int64_t{30} * ticksPerSecond;
constexpr std::int64_t nextStep =
    std::int64_t{2} * ticksPerSecond; // decoded on without looking for keyframes

} // namespace

ThumbnailSize ThumbnailSize::of(model::Size picture) {
    const double scale = std::min(mostHeight / picture.height, mostWidth / picture.width);
    const auto scaled = [scale](double length) {
        return std::max(static_cast<int>(std::lround(length * scale)), 2);
    };
    return {scaled(picture.width), scaled(picture.height)};
}

ThumbnailReader::ThumbnailReader(const Asset& asset, const AssetTrack& track,
                                 const std::function<void()>& opened)
    : m_source(asset, track.id, opened)
    , m_size(ThumbnailSize::of(track.naturalSize))
    , m_scaler(m_size.width, m_size.height) {
    m_source.setKeptBytes(0);
}

std::optional<Thumbnail> ThumbnailReader::read(std::int64_t tick, std::int64_t tolerance,
                                               const std::stop_token& givenUp) try {
    return search(tick, tolerance, givenUp);
} catch (const MediaError& error) {
    base::logInfo("No thumbnail: {}", error.what());
    m_lastExact.reset();
    return Thumbnail{tick, tick, nullptr};
}

std::optional<Thumbnail> ThumbnailReader::search(std::int64_t tick, std::int64_t tolerance,
                                                 const std::stop_token& givenUp) {
    if (m_lastExact && tick > *m_lastExact && tick - *m_lastExact <= nextStep)
        return exact(tick, givenUp);
    m_lastExact.reset();
    const auto key = m_source.keyframeAt(timeOf(tick));
    if (!key)
        return Thumbnail{tick, tick, nullptr};
    const auto ticks =
        static_cast<std::int64_t>(std::ceil(key->presentationTime.seconds() * ticksPerSecond));
    if (const auto early = tick - ticks; early <= tolerance || early > longestSearch)
        return small(tick, early > longestSearch ? tick : std::min(ticks, tick), *key);
    return exact(tick, givenUp);
}

std::optional<Thumbnail> ThumbnailReader::exact(std::int64_t tick, const std::stop_token& givenUp) {
    const auto found = m_source.frameAt(timeOf(tick), givenUp);
    if (!found && found.error() == NoFrame::givenUp)
        return {};
    if (!found)
        return Thumbnail{tick, tick, nullptr};
    m_lastExact = tick;
    return small(tick, tick, *found);
}

Thumbnail ThumbnailReader::small(std::int64_t tick, std::int64_t shown, const VideoFrame& frame) {
    const auto scaled = m_scaler.scale(*frame.pixels);
    auto pixels = PixelBuffer::allocate(PixelFormat::bgra, m_size.width, m_size.height);
    color::convertI420ToBgra(*scaled, *pixels);
    return {tick, shown, std::move(pixels)};
}

} // namespace vantro::media::strips
