#include "media/FrameSource.h"

#include "media/av/decode/VideoDecoder.h"
#include "media/av/pictures/FrameConversion.h"

#include <algorithm>
#include <deque>
#include <optional>

namespace vantro::media {
namespace {

// Below this distance a jump, which empties the decoder's pipeline, costs more than decoding on.
constexpr MediaTime nearDistance{1, 2};

// Pictures so far behind the one asked for are decoded with it, to step back without a search.
constexpr MediaTime keptBehind{-1, 4};

// Indexes may list a keyframe earlier than it is shown, by less than this.
constexpr MediaTime longestReordering{-1, 10};

/// However fine the times' scales are.
MediaTime shifted(MediaTime t, MediaTime by) {
    return MediaTime::nearestTo(Fraction(t) + Fraction(by));
}

std::size_t bytesOf(const PixelBuffer& pixels) {
    std::size_t bytes = 0;
    for (int plane = 0; plane < pixels.planeCount(); ++plane)
        bytes += static_cast<std::size_t>(pixels.stride(plane)) *
                 static_cast<std::size_t>(pixels.planeHeight(plane));
    return bytes;
}

/// Where the decoder stands: trackStart → behindWindow with the first picture; any → elsewhere when
/// the window is dropped or a keyframe decoded by itself; any → behindWindow by a jump.
enum class Position { trackStart, behindWindow, elsewhere };

struct KeptFrame {
    av::DecodedFrame decoded;
    std::shared_ptr<const PixelBuffer> pixels; ///< once somebody asked for them

    MediaTime time() const { return decoded.time; }
    std::size_t bytes() const { return pixels ? bytesOf(*pixels) : av::bytesOf(*decoded.frame); }
};

MediaTime endOf(const Asset& asset, int trackID) {
    const auto track = std::ranges::find(asset.tracks(), trackID, &AssetTrack::id);
    return track == asset.tracks().end() ? MediaTime{} : track->timeRange.end();
}

} // namespace

/// Keeps a window of successive pictures. The picture asked for is found when the window holds one
/// after it, or the track's last.
struct FrameSource::Implementation {
    av::VideoDecoder decoder;
    av::FrameConverter converter;
    MediaTime trackEnd;
    std::size_t mostBytes = usualKeptBytes;
    std::size_t bytes = 0; ///< of the window
    std::deque<KeptFrame> window;
    bool beginsTrack = true;         ///< the window's first picture is the track's first
    bool ended = false;              ///< the window's last picture is the track's last
    std::optional<MediaTime> sought; ///< by a jump whose first picture is still to come
    Position position = Position::trackStart;
    bool skips = false;

    Implementation(const Asset& asset, int trackID, const std::function<void()>& opened)
        : decoder(asset.movie(), trackID, opened)
        , converter(decoder.stream())
        , trackEnd(endOf(asset, trackID)) {}

    bool needsJump(MediaTime t) const {
        if (window.empty()) {
            const auto from =
                position == Position::trackStart ? MediaTime{} : decoder.completeFrom();
            const bool liesBehind = from && (t >= *from || position == Position::trackStart);
            return position == Position::elsewhere || !liesBehind ||
                   (!ended && decoder.hasKeyframeBetween(*from + nearDistance, t));
        }
        if (t < window.front().time())
            return !beginsTrack;
        if (ended || t < window.back().time())
            return false;
        return position == Position::elsewhere ||
               decoder.hasKeyframeBetween(window.back().time() + nearDistance, t);
    }

    void forget() {
        window.clear();
        bytes = 0;
        beginsTrack = false;
        ended = false;
        sought.reset();
        position = Position::elsewhere;
    }

    void jump(MediaTime t) {
        forget();
        decoder.seek(t);
        position = Position::behindWindow;
        sought = t;
    }

    void append(av::DecodedFrame decoded) {
        window.push_back({std::move(decoded), nullptr});
        bytes += window.back().bytes();
        // A jump ends behind its target only where nothing lies before.
        beginsTrack = beginsTrack || (sought && window.back().time() > *sought);
        sought.reset();
        const auto complete = decoder.completeFrom();
        while (complete && !window.empty() && window.front().time() < *complete)
            dropFirst();
        trim();
    }

    void dropFirst() {
        bytes -= window.front().bytes();
        window.pop_front();
        beginsTrack = false;
    }

    void trim() {
        while (bytes > mostBytes && window.size() > 2)
            dropFirst();
    }

    /// False when given up.
    bool decodeBeyond(MediaTime t, const std::stop_token& givenUp) {
        decoder.hurryTowards(shifted(t, keptBehind));
        while (!ended && (window.empty() || window.back().time() <= t)) {
            if (givenUp.stop_requested())
                return false;
            position = Position::behindWindow;
            if (auto frame = decoder.next())
                append(std::move(*frame));
            else
                ended = true;
        }
        return true;
    }

    /// Of the window's pictures the latest not after `t`, or the first.
    std::size_t indexAt(MediaTime t) const {
        const auto after = std::ranges::upper_bound(window, t, {}, &KeptFrame::time);
        const auto notAfter = static_cast<std::size_t>(after - window.begin());
        return notAfter == 0 ? 0 : notAfter - 1;
    }

    /// Where the picture ends; nothing while the one after it is not known.
    std::optional<MediaTime> endOfFrame(std::size_t index) const {
        if (index + 1 < window.size())
            return window[index + 1].time();
        return ended ? std::optional(trackEnd) : std::nullopt;
    }

    VideoFrame frame(std::size_t index) {
        const MediaTime start = window[index].time();
        const MediaTime end = endOfFrame(index).value_or(start);
        if (!window[index].pixels) {
            KeptFrame& kept = window[index];
            bytes -= kept.bytes();
            kept.pixels = converter.convert(*kept.decoded.frame);
            kept.decoded.frame.reset();
            bytes += kept.bytes();
        }
        const auto pixels = window[index].pixels;
        trim();
        return {pixels, start, std::max(end - start, MediaTime{})};
    }

    /// As the file's times are rounded; else a picture due at two thirds of a millisecond, say,
    /// would never show.
    MediaTime inFile(MediaTime t) const { return shifted(t, decoder.rounding()); }

    FoundFrame exact(MediaTime t, const std::stop_token& givenUp) {
        if (givenUp.stop_requested())
            return std::unexpected(NoFrame::givenUp);
        if (needsJump(t))
            jump(t);
        if (!decodeBeyond(t, givenUp))
            return std::unexpected(NoFrame::givenUp);
        if (window.empty())
            return std::unexpected(NoFrame::emptyTrack);
        return frame(indexAt(t));
    }

    /// A kept picture that is shown at `t`, or at another time between the two around it.
    std::optional<VideoFrame> keptNear(MediaTime t, MediaTime from, MediaTime to) {
        if (window.empty())
            return {};
        const auto index = indexAt(t);
        const MediaTime start = window[index].time();
        const bool isLast = ended && index + 1 == window.size();
        const bool isFirst = beginsTrack && index == 0;
        const auto end = endOfFrame(index);
        const bool reachesBack = isLast || (end ? from < *end : from <= start);
        const bool reachesForth = isFirst || start <= to;
        return reachesBack && reachesForth ? std::optional(frame(index)) : std::nullopt;
    }

    /// Decodes the keyframe that shows at `t` or before, and nothing else.
    void jumpToKeyframe(MediaTime t) {
        if (!window.empty() && position == Position::elsewhere && window.front().time() <= t &&
            !decoder.hasKeyframeBetween(window.front().time(), t))
            return; // it was found by the call before
        forget();
        if (auto keyframe = decoder.keyframeAt(t))
            append(std::move(*keyframe));
    }
};

FrameSource::FrameSource(const Asset& asset, int trackID, const std::function<void()>& opened)
    : m_implementation(std::make_unique<Implementation>(asset, trackID, opened)) {}

FrameSource::~FrameSource() = default;
FrameSource::FrameSource(FrameSource&&) noexcept = default;

FoundFrame FrameSource::frameAt(MediaTime t, const std::stop_token& givenUp) {
    return m_implementation->exact(m_implementation->inFile(t), givenUp);
}

FoundFrame FrameSource::frameNear(MediaTime asked, MediaTime tolerance,
                                  const std::stop_token& givenUp) {
    auto& self = *m_implementation;
    const auto t = self.inFile(asked);
    const auto from = shifted(t, {-tolerance.value, tolerance.timescale});
    const auto to = shifted(t, tolerance);
    if (auto kept = self.keptNear(t, from, to))
        return *std::move(kept);
    if (!givenUp.stop_requested() &&
        self.decoder.hasKeyframeBetween(shifted(from, longestReordering), to)) {
        self.jumpToKeyframe(to);
        if (auto found = self.keptNear(t, from, to))
            return *std::move(found);
    }
    return self.exact(t, givenUp);
}

FoundFrame FrameSource::keyframeAt(MediaTime t) {
    auto& self = *m_implementation;
    self.jumpToKeyframe(self.inFile(t));
    if (self.window.empty())
        return std::unexpected(NoFrame::emptyTrack);
    return self.frame(0);
}

void FrameSource::setSkipsUnreferenced(bool skips) {
    auto& self = *m_implementation;
    if (self.skips && !skips)
        self.forget(); // it has holes
    self.skips = skips;
    self.decoder.setSkipsUnreferenced(skips);
}

void FrameSource::setKeptBytes(std::size_t bytes) {
    m_implementation->mostBytes = bytes;
    m_implementation->trim();
}

std::size_t FrameSource::keptBytes() const {
    return m_implementation->bytes;
}

MediaTime FrameSource::rounding() const {
    return m_implementation->decoder.rounding();
}

} // namespace vantro::media
