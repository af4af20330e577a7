#include "media/av/pictures/PictureCodec.h"

#include "media/av/Handles.h"
#include "media/av/Libraries.h"
#include "media/av/Orientation.h"
#include "media/av/encode/EncoderSetup.h"
#include "media/av/pictures/FrameConversion.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <span>
#include <string_view>
#include <utility>

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace vantro::media::av {
namespace {

constexpr int largestSide = 16384;
constexpr std::int64_t mostPixels = 100'000'000;

AVCodecID codecOf(std::span<const std::uint8_t> bytes) {
    const std::string_view start(reinterpret_cast<const char*>(bytes.data()),
                                 std::min<std::size_t>(bytes.size(), 12));
    if (start.starts_with("\xFF\xD8\xFF"))
        return AV_CODEC_ID_MJPEG;
    if (start.starts_with("\x89PNG\r\n\x1A\n"))
        return AV_CODEC_ID_PNG;
    if (start.starts_with("RIFF") && start.ends_with("WEBP"))
        return AV_CODEC_ID_WEBP;
    return AV_CODEC_ID_NONE;
}

/// The decoder's own words say more than its code.
[[noreturn]] void refuse(const std::filesystem::path& path, int code) {
    const auto line = takeLastErrorLine();
    fail("Cannot read the picture", path, line.empty() ? errorText(code) : line);
}

FrameHandle decoded(const std::filesystem::path& path, std::vector<std::uint8_t> bytes) {
    const auto id = codecOf(bytes);
    if (id == AV_CODEC_ID_NONE)
        fail("Cannot read the picture", path, "It is neither JPEG, PNG nor WebP");
    const AVCodec* codec = avcodec_find_decoder(id);
    CodecHandle context(avcodec_alloc_context3(codec));
    if (codec == nullptr || !context)
        fail("Cannot read the picture", path, "No decoder is installed");
    context->max_pixels = mostPixels;
    context->err_recognition = AV_EF_CRCCHECK | AV_EF_EXPLODE;
    takeLastErrorLine();
    if (const int opened = avcodec_open2(context.get(), codec, nullptr); opened < 0)
        refuse(path, opened);
    const auto packet = makePacket();
    packet->size = static_cast<int>(bytes.size());
    bytes.resize(bytes.size() + AV_INPUT_BUFFER_PADDING_SIZE); // decoders read beyond the end
    packet->data = bytes.data();
    auto frame = makeFrame();
    int result = avcodec_send_packet(context.get(), packet.get());
    if (result >= 0)
        result = avcodec_send_packet(context.get(), nullptr);
    if (result >= 0)
        result = avcodec_receive_frame(context.get(), frame.get());
    if (result < 0)
        refuse(path, result);
    if (frame->decode_error_flags != 0 || (frame->flags & AV_FRAME_FLAG_CORRUPT) != 0)
        refuse(path, AVERROR_INVALIDDATA);
    if (frame->width > largestSide || frame->height > largestSide)
        fail("Cannot read the picture", path, "A side is longer than 16384 pixels");
    return frame;
}

Orientation orientationOf(const AVFrame& frame) {
    if (const auto* matrix = av_frame_get_side_data(&frame, AV_FRAME_DATA_DISPLAYMATRIX))
        return orientationFromMatrix(matrix->data);
    const auto* exif = av_dict_get(frame.metadata, "Orientation", nullptr, 0);
    return exif == nullptr ? Orientation{} : orientationFromExif(std::atoi(exif->value));
}

bool hasAlpha(const AVFrame& frame) {
    const auto* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    return (format->flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
}

struct Planes {
    const std::uint8_t* const* data;
    const int* strides;
    int width;
    int height;
    AVPixelFormat format;
};

std::shared_ptr<PixelBuffer> scaled(const Planes& from, bool isFullRange, int width, int height) {
    const ScalerHandle scaler(sws_getContext(
        from.width, from.height, from.format, width, height, AV_PIX_FMT_BGRA,
        SWS_AREA | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, nullptr, nullptr, nullptr));
    if (!scaler)
        throw MediaError("Pictures of this kind cannot be converted");
    // JPEG and WebP both mean BT.601.
    sws_setColorspaceDetails(scaler.get(), sws_getCoefficients(SWS_CS_ITU601), isFullRange ? 1 : 0,
                             sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16, 1 << 16);
    auto picture = PixelBuffer::allocate(PixelFormat::bgra, width, height);
    std::uint8_t* const destination[]{picture->mutableRow(0, 0), nullptr, nullptr, nullptr};
    const int strides[]{picture->stride(0), 0, 0, 0};
    if (sws_scale(scaler.get(), from.data, from.strides, 0, from.height, destination, strides) <= 0)
        throw MediaError("Pictures of this kind cannot be converted");
    return picture;
}

void premultiply(PixelBuffer& picture) {
    for (int y = 0; y < picture.height(); ++y) {
        std::uint8_t* pixel = picture.mutableRow(0, y);
        for (const std::uint8_t* end = pixel + std::ptrdiff_t{picture.width()} * 4; pixel < end;
             pixel += 4)
            for (int channel = 0; channel < 3; ++channel)
                pixel[channel] = static_cast<std::uint8_t>((pixel[channel] * pixel[3] + 127) / 255);
    }
}

/// What is transparent has no color that may bleed into its neighbors: it is premultiplied before
/// anything is averaged.
std::shared_ptr<PixelBuffer> converted(const AVFrame& frame, int width, int height) {
    const auto format = static_cast<AVPixelFormat>(frame.format);
    const auto* description = av_pix_fmt_desc_get(format);
    const bool isFullRange = frame.color_range == AVCOL_RANGE_JPEG ||
                             (description->flags & AV_PIX_FMT_FLAG_RGB) != 0 ||
                             description->nb_components < 3;
    const Planes whole{frame.data, frame.linesize, frame.width, frame.height,
                       formatWithoutRange(format)};
    if (!hasAlpha(frame))
        return scaled(whole, isFullRange || whole.format != format, width, height);
    auto picture = scaled(whole, isFullRange, frame.width, frame.height);
    premultiply(*picture);
    if (width == frame.width && height == frame.height)
        return picture;
    const std::uint8_t* const planes[]{picture->row(0, 0), nullptr, nullptr, nullptr};
    const int strides[]{picture->stride(0), 0, 0, 0};
    return scaled({planes, strides, frame.width, frame.height, AV_PIX_FMT_BGRA}, true, width,
                  height);
}

} // namespace

std::shared_ptr<const PixelBuffer> decodePicture(const std::filesystem::path& path,
                                                 std::vector<std::uint8_t> bytes, int neededWidth,
                                                 int neededHeight) {
    prepareLibraries();
    const auto frame = decoded(path, std::move(bytes));
    const auto turn = orientationOf(*frame);
    if (turn.swapsSides())
        std::swap(neededWidth, neededHeight);
    int width = frame->width;
    int height = frame->height;
    while (neededWidth > 0 && neededHeight > 0 && width / 2 >= neededWidth &&
           height / 2 >= neededHeight) {
        width /= 2;
        height /= 2;
    }
    const auto picture = converted(*frame, width, height);
    return turn.isUpright() ? picture : turnedUpright(*picture, turn);
}

std::vector<std::uint8_t> encodePng(const PixelBuffer& picture) {
    prepareLibraries();
    const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_PNG);
    CodecHandle context(avcodec_alloc_context3(codec));
    if (codec == nullptr || !context)
        throw MediaError("No PNG encoder is installed");
    const auto frame = makeFrame();
    frame->format = context->pix_fmt = AV_PIX_FMT_RGB24;
    frame->width = context->width = picture.width();
    frame->height = context->height = picture.height();
    context->time_base = {1, 1};
    setOption(*context, "pred", "mixed");
    if (avcodec_open2(context.get(), codec, nullptr) < 0 || av_frame_get_buffer(frame.get(), 0) < 0)
        throw std::bad_alloc();
    for (int y = 0; y < picture.height(); ++y) {
        const std::uint8_t* from = picture.row(0, y);
        std::uint8_t* to = frame->data[0] + std::ptrdiff_t{y} * frame->linesize[0];
        for (int x = 0; x < picture.width(); ++x, from += 4, to += 3) {
            to[0] = from[2];
            to[1] = from[1];
            to[2] = from[0];
        }
    }
    const auto packet = makePacket();
    if (avcodec_send_frame(context.get(), frame.get()) < 0 ||
        avcodec_send_frame(context.get(), nullptr) < 0 ||
        avcodec_receive_packet(context.get(), packet.get()) < 0)
        throw std::bad_alloc();
    return {packet->data, packet->data + packet->size};
}

} // namespace vantro::media::av
