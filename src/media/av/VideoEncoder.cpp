#include "media/av/VideoEncoder.h"

#include "media/MediaError.h"
#include "media/av/Libraries.h"

#include <algorithm>
#include <cmath>
#include <thread>

#include <fmt/format.h>

extern "C" {
#include <libavutil/opt.h>
}

namespace vantro::av {
namespace {

// Slices of one live picture are encoded side by side; more of them cost compression for nothing.
constexpr unsigned mostSliceThreads = 4;
// Offline, pictures are encoded side by side, and each takes memory: 4K pictures about 40 MB.
constexpr unsigned mostFrameThreads = 12;
// A still screen is sharp long before this; below it, text already perfect costs megabits.
constexpr int finestQuantizer = 10;
constexpr int mostBFrames = 3;

void setOption(AVCodecContext& codec, const char* name, const std::string& value) {
    if (av_opt_set(codec.priv_data, name, value.c_str(), 0) < 0)
        throw MediaError(fmt::format("The H.264 encoder does not know {}={}", name, value));
}

void describeColor(AVCodecContext& codec) {
    codec.color_primaries = AVCOL_PRI_BT709;
    codec.color_trc = AVCOL_TRC_BT709;
    codec.colorspace = AVCOL_SPC_BT709;
    codec.color_range = AVCOL_RANGE_MPEG;
    codec.chroma_sample_location = AVCHROMA_LOC_CENTER;
}

/// A frame that shares the picture's memory and keeps it alive.
FrameHandle frameOf(std::shared_ptr<const PixelBuffer> picture) {
    auto frame = makeFrame();
    frame->format = AV_PIX_FMT_YUV420P;
    frame->width = picture->width();
    frame->height = picture->height();
    for (int plane = 0; plane < picture->planeCount(); ++plane) {
        frame->data[plane] = const_cast<std::uint8_t*>(picture->plane(plane)); // only read
        frame->linesize[plane] = picture->stride(plane);
    }
    using Owner = std::shared_ptr<const PixelBuffer>;
    auto owner = std::make_unique<Owner>(std::move(picture));
    const auto release = [](void* opaque, std::uint8_t*) { delete static_cast<Owner*>(opaque); };
    const auto bytes = static_cast<std::size_t>(frame->linesize[0]) * frame->height;
    frame->buf[0] =
        av_buffer_create(frame->data[0], bytes, release, owner.get(), AV_BUFFER_FLAG_READONLY);
    if (frame->buf[0] == nullptr)
        throw std::bad_alloc();
    owner.release(); // NOLINT(bugprone-unused-return-value): the buffer owns it now
    return frame;
}

} // namespace

std::int32_t timescaleFor(double frameRate) {
    // Whole ticks for 24, 25, 30, 50, 60, 120 and the NTSC rates; fine enough for a live source,
    // whose frames come at any time.
    constexpr std::int32_t usual = 60'000;
    const auto rate = std::lround(frameRate);
    const bool isWhole = rate >= 1 && rate <= 1000 && std::abs(frameRate - rate) < 1e-6;
    return isWhole && usual % rate != 0 ? static_cast<std::int32_t>(rate * 1000) : usual;
}

VideoEncoder::VideoEncoder(const VideoSettings& settings) : m_packet(makePacket()) {
    prepareLibraries();
    const AVCodec* codec = avcodec_find_encoder_by_name("libx264");
    if (codec == nullptr)
        throw MediaError("The H.264 encoder libx264 is not installed");
    m_codec.reset(avcodec_alloc_context3(codec));
    if (!m_codec)
        throw std::bad_alloc();
    m_codec->width = settings.width;
    m_codec->height = settings.height;
    m_codec->pix_fmt = AV_PIX_FMT_YUV420P;
    m_codec->time_base = {1, timescaleFor(settings.expectedFrameRate)};
    m_codec->framerate = av_d2q(settings.expectedFrameRate, 1'001'000);
    m_codec->bit_rate = settings.averageBitRate;
    m_codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    describeColor(*m_codec);
    setOption(*m_codec, "profile", "high");
    if (settings.expectsRealTime)
        applyRealTimeOptions(settings);
    else
        applyOfflineOptions(settings);
    takeLastErrorLine();
    if (const int result = avcodec_open2(m_codec.get(), codec, nullptr); result < 0) {
        const auto detail = takeLastErrorLine();
        throw MediaError(fmt::format("Cannot encode {}x{} pictures: {}", settings.width,
                                     settings.height, detail.empty() ? errorText(result) : detail));
    }
}

void VideoEncoder::applyRealTimeOptions(const VideoSettings& settings) {
    const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
    m_codec->thread_count = static_cast<int>(std::min(cores, mostSliceThreads));
    m_codec->qmin = finestQuantizer;
    m_codec->max_b_frames = 0;
    setOption(*m_codec, "preset", "ultrafast");
    setOption(*m_codec, "tune", "zerolatency");
    setOption(*m_codec, "forced-idr", "1");
    // The preset leaves out what makes the High profile; keyframes come by time, not by count.
    setOption(*m_codec, "x264-params", "cabac=1:8x8dct=1:keyint=infinite");
    m_forcedInterval = std::llround(settings.keyframeInterval * m_codec->time_base.den);
}

void VideoEncoder::applyOfflineOptions(const VideoSettings& settings) {
    const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
    m_codec->thread_count = static_cast<int>(std::min(cores + cores / 2, mostFrameThreads));
    m_codec->max_b_frames = mostBFrames;
    m_codec->qmin = finestQuantizer;
    m_codec->gop_size = std::max(
        1, static_cast<int>(std::lround(settings.keyframeInterval * settings.expectedFrameRate)));
    setOption(*m_codec, "preset", "veryfast");
}

bool VideoEncoder::needsKeyframe(std::int64_t ticks) {
    if (!m_forcedInterval)
        return false;
    if (!m_isFirst && ticks - m_lastKeyframe < *m_forcedInterval)
        return false;
    m_isFirst = false;
    m_lastKeyframe = ticks;
    return true;
}

void VideoEncoder::encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t ticks,
                          const PacketSink& sink) {
    const auto frame = frameOf(std::move(picture));
    frame->pts = ticks;
    frame->pict_type = needsKeyframe(ticks) ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;
    frame->colorspace = m_codec->colorspace;
    frame->color_range = m_codec->color_range;
    send(frame.get(), sink);
}

void VideoEncoder::drain(const PacketSink& sink) {
    send(nullptr, sink);
}

void VideoEncoder::send(const AVFrame* frame, const PacketSink& sink) {
    int result = avcodec_send_frame(m_codec.get(), frame);
    while (result >= 0) {
        result = avcodec_receive_packet(m_codec.get(), m_packet.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return;
        if (result >= 0)
            sink(*m_packet);
        av_packet_unref(m_packet.get());
    }
    throw MediaError("Encoding failed: " + errorText(result));
}

} // namespace vantro::av
