#include "media/FrameSource.h"

#include "media/av/FrameConversion.h"
#include "media/av/VideoDecoder.h"

#include <algorithm>
#include <deque>

namespace vantro::media {
namespace {

// Kept to step back by a picture without decoding from the keyframe again.
constexpr std::size_t mostFrames = 8;
constexpr std::size_t mostBytes = 48'000'000;

// Below this distance a jump, which empties the decoder's pipeline, costs more than decoding on.
constexpr MediaTime nearDistance{1, 2};

struct KeptFrame {
    av::DecodedFrame decoded;
    std::shared_ptr<const PixelBuffer> pixels; ///< once somebody asked for them
};

} // namespace

/// Keeps a window of successive pictures. The picture asked for is found when the window holds one
/// after it, or the track's last.
struct FrameSource::Implementation {
    av::VideoDecoder decoder;
    av::FrameConverter converter;
    std::size_t capacity;
    std::deque<KeptFrame> window;
    bool beginsTrack = true; ///< the window's first picture is the track's first
    bool ended = false;      ///< the window's last picture is the track's last

    Implementation(const std::filesystem::path& path, int trackID)
        : decoder(path, trackID), converter(decoder.stream()) {
        const auto size = av::squarePixelSize(decoder.stream());
        const auto frameBytes = static_cast<std::size_t>(size.width) * size.height * 4;
        capacity = std::clamp<std::size_t>(mostBytes / frameBytes, 2, mostFrames);
    }

    bool needsJump(MediaTime t) const {
        if (window.empty())
            return !ended && decoder.hasKeyframeBetween(nearDistance, t);
        if (t < window.front().decoded.time)
            return !beginsTrack;
        return !ended && decoder.hasKeyframeBetween(window.back().decoded.time + nearDistance, t);
    }

    void jump(MediaTime t) {
        window.clear();
        beginsTrack = false;
        ended = false;
        decoder.seek(t);
    }

    void decodeBeyond(MediaTime t) {
        while (!ended && (window.empty() || window.back().decoded.time <= t)) {
            auto frame = decoder.next();
            if (!frame) {
                ended = true;
                return;
            }
            window.push_back({std::move(*frame), nullptr});
            if (window.size() > capacity) {
                window.pop_front();
                beginsTrack = false;
            }
        }
    }

    VideoFrame frame(std::size_t index) {
        KeptFrame& kept = window[index];
        if (!kept.pixels) {
            kept.pixels = converter.convert(*kept.decoded.frame);
            kept.decoded.frame.reset();
        }
        const MediaTime start = kept.decoded.time;
        const MediaTime end =
            index + 1 < window.size() ? window[index + 1].decoded.time : decoder.endTime();
        return {kept.pixels, start, std::max(end - start, MediaTime{})};
    }
};

FrameSource::FrameSource(const Asset& asset, int trackID)
    : m_implementation(std::make_unique<Implementation>(asset.path(), trackID)) {}

FrameSource::~FrameSource() = default;
FrameSource::FrameSource(FrameSource&&) noexcept = default;

std::optional<VideoFrame> FrameSource::frameAt(MediaTime t) {
    auto& self = *m_implementation;
    if (self.needsJump(t))
        self.jump(t);
    self.decodeBeyond(t);
    if (self.window.empty())
        return {};
    const auto after = std::ranges::upper_bound(
        self.window, t, {}, [](const KeptFrame& kept) { return kept.decoded.time; });
    const auto notAfter = static_cast<std::size_t>(after - self.window.begin());
    return self.frame(notAfter == 0 ? 0 : notAfter - 1);
}

} // namespace vantro::media
