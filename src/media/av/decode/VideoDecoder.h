#pragma once

#include "media/av/MovieFile.h"
#include "media/values/MediaTime.h"

#include <functional>
#include <optional>
#include <string>

namespace vantro::media::av {

/// A decoded picture, not yet converted, and when it is to be shown.
struct DecodedFrame {
    FrameHandle frame;
    MediaTime time;
};

/// What the picture's memory takes.
std::size_t bytesOf(const AVFrame& frame);

/// Decodes one video stream of a file in presentation order. One thread at a time; decodes on a few
/// threads of its own.
class VideoDecoder {
  public:
    /// Throws MediaError, with "No video track found" when the file has no such stream. `opened` is
    /// called once the file has been read, before there are threads that decode.
    VideoDecoder(const MovieReference& movie, int streamIndex,
                 const std::function<void()>& opened = {});

    const AVStream& stream() const { return *m_stream; }

    /// By how much a picture's time may be too late because the file rounds it to milliseconds.
    MediaTime rounding() const;
    /// The next picture; nothing after the last. Throws MediaError where the movie breaks off or is
    /// damaged, after every picture before that place has been given.
    std::optional<DecodedFrame> next();
    /// Goes on from a keyframe that lets `next` give the picture shown at `t`: its first answer is
    /// not after `t`, unless it is the stream's first picture.
    void seek(MediaTime t);
    /// The picture that `seek` would go on from, decoded by itself; nothing when there is none.
    /// Before `next` there has to be a seek.
    std::optional<DecodedFrame> keyframeAt(MediaTime t);
    /// Whether pictures that no other one refers to are left out, from the next packet on.
    void setSkipsUnreferenced(bool skips);
    /// On the way to the picture shown at `t`, until the next jump, unreferenced ones that another
    /// follows not after `t` are left out: searching a long group of pictures costs half.
    void hurryTowards(MediaTime t) { m_hurry = m_clock.ticksAtOrBefore(t); }
    /// The picture from which on none was left out in a hurry since the last jump; nothing when
    /// none was at all.
    std::optional<MediaTime> completeFrom() const;
    /// Whether a keyframe lies after `from` and not after `to`, as far as the file's index tells.
    bool hasKeyframeBetween(MediaTime from, MediaTime to) const;

  private:
    std::optional<DecodedFrame> decodeNext();
    std::optional<DecodedFrame> accept(FrameHandle frame);
    void feed();
    void noteProgress(const AVPacket& packet);
    bool leavesOut(const AVPacket& packet);
    void endInput(std::string fault);
    bool endsEarly() const;
    void searchBack(std::int64_t wanted);
    void jumpTo(std::int64_t ticks);
    [[noreturn]] void breakOff(std::int64_t ticks, const std::string& reason) const;

    MovieFile m_file;
    AVStream* m_stream = nullptr;
    StreamClock m_clock;
    CodecHandle m_codec;
    PacketHandle m_packet;
    std::optional<DecodedFrame> m_peeked; ///< decoded by seek, not yet given
    bool m_stopsAtKeyframe = false;       ///< the codec gets a keyframe and nothing else
    std::string m_inputFault;             ///< why the packets ended early
    std::string m_decodeFault;            ///< before the first picture; told when none follows
    std::int64_t m_sought;                ///< where the last jump wanted to go, ticks

    /// How the first packet since the last jump, a keyframe, stands, ticks. Pictures shown before
    /// it need some that the jump passed over.
    struct Start {
        std::int64_t shown;
        std::int64_t decoded;
    };
    std::optional<Start> m_start;
    bool m_hasJumped = false;
    bool m_skipsUnreferenced = false;
    std::optional<std::int64_t> m_hurry;        ///< up to here pictures may be left out, ticks
    std::optional<std::int64_t> m_latestShown;  ///< of the packets since the jump, ticks
    std::optional<std::int64_t> m_completeFrom; ///< ticks
    std::optional<std::int64_t> m_inputEnd;     ///< how far the packets since the jump reach, ticks
    std::optional<std::int64_t> m_lastTicks;    ///< of the last picture given
};

} // namespace vantro::media::av
