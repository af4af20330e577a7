#include "media/av/encode/ProxyEncoder.h"

#include "media/av/encode/EncoderSetup.h"
#include "media/values/MediaError.h"

#include <utility>

namespace vantro::media::av {
namespace {

// Text stays legible in its outlines, at about a megabit a second for a busy screen; finer ones
// cost the disk and are seen for a tenth of a second.
constexpr auto rateFactor = "30";
constexpr int keyframesInASecond = 4;

CodecSession open(int width, int height, std::int32_t timescale) {
    constexpr auto name = "libx264";
    auto codec = makeEncoder(name, {.width = width, .height = height});
    codec->time_base = {1, timescale};
    codec->bit_rate = 0;
    codec->thread_count = 1;
    codec->max_b_frames = 0;
    setOption(*codec, "preset", "ultrafast");
    setOption(*codec, "tune", "zerolatency");
    setOption(*codec, "crf", rateFactor);
    setOption(*codec, "forced-idr", "1");
    // Keyframes come by time, not by count. Slices would only help threads.
    setOption(*codec, "x264-params", "keyint=infinite:sliced-threads=0");
    openEncoder(*codec);
    return {name, std::move(codec)};
}

} // namespace

ProxyEncoder::ProxyEncoder(int width, int height, std::int32_t timescale)
    : m_session(open(width, height, timescale)) {}

void ProxyEncoder::encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t ticks,
                          const PacketSink& sink) {
    auto frame = encoderFrame(std::move(picture), ticks);
    const int timescale = context().time_base.den;
    if (!m_lastKeyframe || (ticks - *m_lastKeyframe) * keyframesInASecond >= timescale) {
        frame->pict_type = AV_PICTURE_TYPE_I;
        m_lastKeyframe = ticks;
    }
    if (const auto done = m_session.encode(frame.get(), sink); !done)
        throw MediaError("Cannot encode a small copy: " + done.error());
}

} // namespace vantro::media::av
