#include "media/av/encode/EncoderSetup.h"

#include "media/av/Libraries.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <cmath>
#include <new>

#include <fmt/format.h>

extern "C" {
#include <libavutil/opt.h>
}

namespace vantro::media::av {
CodecHandle makeEncoder(const char* codecName, const VideoSettings& settings) {
    prepareLibraries();
    const AVCodec* codec = avcodec_find_encoder_by_name(codecName);
    if (codec == nullptr)
        throw MediaError(fmt::format("The H.264 encoder {} is not installed", codecName));
    CodecHandle context(avcodec_alloc_context3(codec));
    if (!context)
        throw std::bad_alloc();
    context->width = settings.width;
    context->height = settings.height;
    context->pix_fmt = AV_PIX_FMT_YUV420P;
    context->time_base = {1, timescaleFor(settings.expectedFrameRate)};
    context->framerate = av_d2q(settings.expectedFrameRate, 1'001'000);
    context->bit_rate = settings.averageBitRate;
    context->qmin = finestQuantizer;
    context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    context->color_primaries = AVCOL_PRI_BT709;
    context->color_trc = AVCOL_TRC_BT709;
    context->colorspace = AVCOL_SPC_BT709;
    context->color_range = AVCOL_RANGE_MPEG;
    context->chroma_sample_location = AVCHROMA_LOC_CENTER;
    setOption(*context, "profile", "high");
    return context;
}

void setOption(AVCodecContext& codec, const char* name, const std::string& value) {
    if (av_opt_set(codec.priv_data, name, value.c_str(), 0) < 0)
        throw MediaError(
            fmt::format("The encoder {} does not know {}={}", codec.codec->name, name, value));
}

void openEncoder(AVCodecContext& codec) {
    takeLastErrorLine();
    const int result = avcodec_open2(&codec, nullptr, nullptr);
    if (result >= 0)
        return;
    const auto detail = takeLastErrorLine();
    throw MediaError(fmt::format("Cannot encode {}x{} pictures: {}", codec.width, codec.height,
                                 detail.empty() ? errorText(result) : detail));
}

std::int32_t timescaleFor(double frameRate) {
    // Whole ticks for 24, 25, 30, 50, 60, 120 and the NTSC rates; fine enough for a live source,
    // whose frames come at any time.
    constexpr std::int32_t usual = 60'000;
    const auto rate = std::lround(frameRate);
    const bool isWhole = rate >= 1 && rate <= 1000 && std::abs(frameRate - rate) < 1e-6;
    return isWhole && usual % rate != 0 ? static_cast<std::int32_t>(rate * 1000) : usual;
}

int framesBetweenKeyframes(const VideoSettings& settings) {
    return std::max(
        1, static_cast<int>(std::lround(settings.keyframeInterval * settings.expectedFrameRate)));
}

FrameHandle encoderFrame(std::shared_ptr<const PixelBuffer> picture, std::int64_t ticks) {
    auto frame = makeFrame();
    frame->format = AV_PIX_FMT_YUV420P;
    frame->width = picture->width();
    frame->height = picture->height();
    frame->pts = ticks;
    frame->colorspace = AVCOL_SPC_BT709;
    frame->color_range = AVCOL_RANGE_MPEG;
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

} // namespace vantro::media::av
