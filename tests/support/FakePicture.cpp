#include "support/FakeCamera.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <stdexcept>

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace vantro::test {
namespace {

constexpr int cell = 8;
constexpr int bits = 16;

enum Color { black, white, strong, colorCount };

struct Rgb {
    int r;
    int g;
    int b;
};
constexpr std::array<Rgb, colorCount> rgbOf{
    {{16, 16, 16}, {235, 235, 235}, {FakeCamera::red, FakeCamera::green, FakeCamera::blue}}};

using Yuv = std::array<std::uint8_t, 3>;

/// BT.601, of limited range or full, by colors.
std::array<Yuv, colorCount> yuvOf(bool isFull) {
    std::array<Yuv, colorCount> all{};
    for (std::size_t i = 0; i < all.size(); ++i) {
        const auto [r, g, b] = rgbOf.at(i);
        const double y = 0.299 * r + 0.587 * g + 0.114 * b;
        const double u = 0.5 * (b - y) / (1 - 0.114);
        const double v = 0.5 * (r - y) / (1 - 0.299);
        const auto byte = [](double value) {
            return static_cast<std::uint8_t>(std::lround(value));
        };
        all.at(i) = isFull ? Yuv{byte(y), byte(128 + u), byte(128 + v)}
                           : Yuv{byte(16 + y * 219 / 255), byte(128 + u * 224 / 255),
                                 byte(128 + v * 224 / 255)};
    }
    return all;
}

/// The colors of all pixels.
std::vector<std::uint8_t> colorsOf(const FakeCamera::Format& format, std::uint32_t counter,
                                   bool isWhite) {
    std::vector<std::uint8_t> colors;
    colors.reserve(static_cast<std::size_t>(format.width) *
                   static_cast<std::size_t>(format.height));
    for (int x = 0; x < format.width; ++x)
        colors.push_back(x < bits * cell && ((counter >> (x / cell)) & 1) != 0 ? white : black);
    auto below = std::vector<std::uint8_t>(static_cast<std::size_t>(format.width), strong);
    std::fill_n(below.begin(), format.width / 2, isWhite ? white : black);
    const auto top = colors;
    for (int y = 1; y < format.height; ++y)
        colors.insert(colors.end(), y < cell ? top.begin() : below.begin(),
                      y < cell ? top.end() : below.end());
    return colors;
}

/// Planes of 4:2:0 behind each other.
std::vector<std::uint8_t> planar(const FakeCamera::Format& format, std::uint32_t counter,
                                 bool isWhite, bool isFull) {
    const auto colors = colorsOf(format, counter, isWhite);
    const auto yuv = yuvOf(isFull);
    std::vector<std::uint8_t> bytes;
    bytes.reserve(colors.size() * 2);
    for (const auto color : colors)
        bytes.push_back(yuv[color][0]);
    for (const std::size_t plane : {1, 2})
        for (int y = 0; y < format.height; y += 2)
            for (int x = 0; x < format.width; x += 2)
                bytes.push_back(yuv[colors[static_cast<std::size_t>(y) *
                                               static_cast<std::size_t>(format.width) +
                                           static_cast<std::size_t>(x)]][plane]);
    return bytes;
}

std::vector<std::uint8_t> jpeg(const FakeCamera::Format& format, std::uint32_t counter,
                               bool isWhite) {
    using Codec = std::unique_ptr<AVCodecContext, void (*)(AVCodecContext*)>;
    using Frame = std::unique_ptr<AVFrame, void (*)(AVFrame*)>;
    using Packet = std::unique_ptr<AVPacket, void (*)(AVPacket*)>;
    const auto* encoder = avcodec_find_encoder(AV_CODEC_ID_MJPEG);
    const Codec codec(avcodec_alloc_context3(encoder),
                      [](AVCodecContext* each) { avcodec_free_context(&each); });
    const Frame frame(av_frame_alloc(), [](AVFrame* each) { av_frame_free(&each); });
    const Packet packet(av_packet_alloc(), [](AVPacket* each) { av_packet_free(&each); });
    codec->pix_fmt = AV_PIX_FMT_YUVJ420P;
    codec->width = frame->width = format.width;
    codec->height = frame->height = format.height;
    codec->time_base = {1, format.rate};
    codec->flags |= AV_CODEC_FLAG_QSCALE;
    codec->global_quality = 3 * FF_QP2LAMBDA;
    frame->format = codec->pix_fmt;
    frame->quality = codec->global_quality;
    auto pixels = planar(format, counter, isWhite, true);
    const int halfWidth = (format.width + 1) / 2;
    const int halfHeight = (format.height + 1) / 2;
    frame->data[0] = pixels.data();
    frame->data[1] = frame->data[0] + static_cast<std::ptrdiff_t>(format.width) * format.height;
    frame->data[2] = frame->data[1] + static_cast<std::ptrdiff_t>(halfWidth) * halfHeight;
    frame->linesize[0] = format.width;
    frame->linesize[1] = frame->linesize[2] = halfWidth;
    if (avcodec_open2(codec.get(), encoder, nullptr) < 0 ||
        avcodec_send_frame(codec.get(), frame.get()) < 0 ||
        avcodec_receive_packet(codec.get(), packet.get()) < 0)
        throw std::runtime_error("no JPEG encoder");
    return {packet->data, packet->data + packet->size};
}

std::vector<std::uint8_t> interleaved(std::vector<std::uint8_t> planes, std::size_t luma) {
    const std::vector<std::uint8_t> chroma(planes.begin() + static_cast<std::ptrdiff_t>(luma),
                                           planes.end());
    for (std::size_t i = 0; i < chroma.size(); ++i)
        planes.at(luma + i) = chroma.at(i / 2 + i % 2 * chroma.size() / 2);
    return planes;
}

std::vector<std::uint8_t> packed(const FakeCamera::Format& format, std::uint32_t counter,
                                 bool isWhite) {
    using Layout = FakeCamera::Layout;
    const auto yuv = yuvOf(format.layout == Layout::gray);
    // By color, and for even and odd columns.
    std::array<std::array<std::vector<std::uint8_t>, 2>, colorCount> pixels;
    for (std::size_t color = 0; color < pixels.size(); ++color) {
        const auto [r, g, b] = std::array{static_cast<std::uint8_t>(rgbOf.at(color).r),
                                          static_cast<std::uint8_t>(rgbOf.at(color).g),
                                          static_cast<std::uint8_t>(rgbOf.at(color).b)};
        const auto [luma, u, v] = yuv.at(color);
        for (const std::size_t odd : {0, 1}) {
            const auto chroma = odd == 0 ? u : v;
            auto& pixel = pixels.at(color).at(odd);
            if (format.layout == Layout::yuyv)
                pixel = {luma, chroma};
            else if (format.layout == Layout::uyvy)
                pixel = {chroma, luma};
            else if (format.layout == Layout::rgb)
                pixel = {r, g, b};
            else if (format.layout == Layout::bgrx)
                pixel = {b, g, r, 0};
            else
                pixel = {luma};
        }
    }
    const auto colors = colorsOf(format, counter, isWhite);
    std::vector<std::uint8_t> bytes;
    bytes.reserve(colors.size() * 4);
    for (std::size_t i = 0; i < colors.size(); ++i) {
        const auto& pixel = pixels[colors[i]][i % static_cast<std::size_t>(format.width) % 2];
        bytes.insert(bytes.end(), pixel.begin(), pixel.end());
    }
    return bytes;
}

} // namespace

std::vector<std::uint8_t> fakePicture(const FakeCamera::Format& format, std::uint32_t counter,
                                      bool isWhite) {
    const auto luma =
        static_cast<std::size_t>(format.width) * static_cast<std::size_t>(format.height);
    switch (format.layout) {
    case FakeCamera::Layout::mjpeg:
        return jpeg(format, counter, isWhite);
    case FakeCamera::Layout::i420:
        return planar(format, counter, isWhite, false);
    case FakeCamera::Layout::nv12:
        return interleaved(planar(format, counter, isWhite, false), luma);
    default:
        return packed(format, counter, isWhite);
    }
}

} // namespace vantro::test
