#include "support/FakeCamera.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <stdexcept>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/imgutils.h>
#include <libswscale/swscale.h>
}

namespace vantro::test {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Frame = std::unique_ptr<AVFrame, void (*)(AVFrame*)>;

Frame makeFrame(AVPixelFormat format, int width, int height) {
    Frame frame(av_frame_alloc(), [](AVFrame* each) { av_frame_free(&each); });
    frame->format = format;
    frame->width = width;
    frame->height = height;
    if (av_frame_get_buffer(frame.get(), 0) < 0)
        throw std::bad_alloc();
    return frame;
}

Frame painted(const FakeCamera::Format& format, std::uint32_t counter, bool isWhite) {
    constexpr int cell = 8;
    constexpr int bits = 16;
    constexpr std::array<std::uint8_t, 3> black{16, 16, 16};
    constexpr std::array<std::uint8_t, 3> white{235, 235, 235};
    constexpr std::array<std::uint8_t, 3> strong{FakeCamera::red, FakeCamera::green,
                                                 FakeCamera::blue};
    auto frame = makeFrame(AV_PIX_FMT_RGB24, format.width, format.height);
    for (int y = 0; y < format.height; ++y)
        for (int x = 0; x < format.width; ++x) {
            const bool isOne = x < bits * cell && ((counter >> (x / cell)) & 1) != 0;
            const auto& left = isWhite ? white : black;
            const auto& color = y < cell               ? (isOne ? white : black)
                                : x < format.width / 2 ? left
                                                       : strong;
            std::ranges::copy(color, frame->data[0] + std::ptrdiff_t{y} * frame->linesize[0] +
                                         std::ptrdiff_t{3} * x);
        }
    return frame;
}

AVPixelFormat pixelFormat(FakeCamera::Layout layout) {
    constexpr std::array formats{AV_PIX_FMT_YUYV422, AV_PIX_FMT_UYVY422, AV_PIX_FMT_NV12,
                                 AV_PIX_FMT_YUV420P, AV_PIX_FMT_RGB24,   AV_PIX_FMT_BGR0,
                                 AV_PIX_FMT_GRAY8,   AV_PIX_FMT_YUVJ420P};
    return formats.at(static_cast<std::size_t>(layout));
}

Bytes jpeg(AVFrame& frame) {
    using Codec = std::unique_ptr<AVCodecContext, void (*)(AVCodecContext*)>;
    using Packet = std::unique_ptr<AVPacket, void (*)(AVPacket*)>;
    const auto* encoder = avcodec_find_encoder(AV_CODEC_ID_MJPEG);
    const Codec codec(avcodec_alloc_context3(encoder),
                      [](AVCodecContext* each) { avcodec_free_context(&each); });
    const Packet packet(av_packet_alloc(), [](AVPacket* each) { av_packet_free(&each); });
    codec->pix_fmt = AV_PIX_FMT_YUVJ420P;
    codec->width = frame.width;
    codec->height = frame.height;
    codec->time_base = {1, 30};
    codec->flags |= AV_CODEC_FLAG_QSCALE;
    codec->global_quality = frame.quality = 3 * FF_QP2LAMBDA;
    if (avcodec_open2(codec.get(), encoder, nullptr) < 0 ||
        avcodec_send_frame(codec.get(), &frame) < 0 ||
        avcodec_receive_packet(codec.get(), packet.get()) < 0)
        throw std::runtime_error("no JPEG encoder");
    return {packet->data, packet->data + packet->size};
}

} // namespace

std::vector<std::uint8_t> fakePicture(const FakeCamera::Format& format, std::uint32_t counter,
                                      bool isWhite) {
    const auto wanted = pixelFormat(format.layout);
    const auto [width, height] = std::pair(format.width, format.height);
    const auto picture = painted(format, counter, isWhite);
    const auto frame = makeFrame(wanted, width, height);
    const std::unique_ptr<SwsContext, void (*)(SwsContext*)> scaler(
        sws_getContext(width, height, AV_PIX_FMT_RGB24, width, height, wanted,
                       SWS_POINT | SWS_ACCURATE_RND, nullptr, nullptr, nullptr),
        sws_freeContext);
    sws_scale(scaler.get(), picture->data, picture->linesize, 0, height, frame->data,
              frame->linesize);
    if (format.layout == FakeCamera::Layout::mjpeg)
        return jpeg(*frame);
    const bool isPacked = wanted == AV_PIX_FMT_YUYV422 || wanted == AV_PIX_FMT_UYVY422;
    Bytes bytes;
    for (int plane = 0; plane < av_pix_fmt_count_planes(wanted); ++plane)
        for (int y = 0; y < (plane == 0 ? height : (height + 1) / 2); ++y) {
            const auto* row = frame->data[plane] + std::ptrdiff_t{y} * frame->linesize[plane];
            bytes.insert(bytes.end(), row,
                         row +
                             (isPacked ? 2 * width : av_image_get_linesize(wanted, width, plane)));
        }
    return bytes;
}

} // namespace vantro::test
