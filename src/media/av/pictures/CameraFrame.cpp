#include "media/av/pictures/CameraFrame.h"

#include "base/Fatal.h"
#include "media/av/Libraries.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

extern "C" {
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
}

namespace vantro::media::av {
namespace {

constexpr int mostPixelsASide = 8192;
constexpr int align = 64;

/// How the rows of one plane lie.
struct Rows {
    std::size_t length = 0; ///< bytes that count
    std::size_t stride = 0;
    std::size_t count = 0;
    std::size_t size() const { return count == 0 ? 0 : stride * (count - 1) + length; }
};

bool isPacked422(AVPixelFormat format) {
    return format == AV_PIX_FMT_YUYV422 || format == AV_PIX_FMT_UYVY422 ||
           format == AV_PIX_FMT_YVYU422;
}

std::array<Rows, 3> rowsOf(const RawPicture& raw, std::size_t padding) {
    const auto format = pixelFormat(raw.layout);
    const auto* description = av_pix_fmt_desc_get(format);
    std::array<Rows, 3> planes{};
    for (int i = 0; i < av_pix_fmt_count_planes(format); ++i) {
        auto length = static_cast<std::size_t>(av_image_get_linesize(format, raw.width, i));
        if (isPacked422(format)) // of an odd last column the library wants the color, too
            length = 2 * static_cast<std::size_t>(raw.width);
        const int shift = i == 0 ? 0 : description->log2_chroma_h;
        const auto& plane = raw.planes.at(static_cast<std::size_t>(i));
        auto stride = (length + padding - 1) / padding * padding;
        if (plane.stride > 0)
            stride = static_cast<std::size_t>(plane.stride);
        else if (i > 0 && raw.planes[0].stride > 0) // that of luma tells
            stride = static_cast<std::size_t>(raw.planes[0].stride) >>
                     (format == AV_PIX_FMT_YUV420P ? 1 : 0);
        planes.at(static_cast<std::size_t>(i)) = {
            .length = length,
            .stride = stride,
            .count = static_cast<std::size_t>(AV_CEIL_RSHIFT(raw.height, shift))};
    }
    return planes;
}

bool isInOnePiece(const RawPicture& raw) {
    return raw.planes[1].bytes.empty();
}

/// Bytes from the first plane to the last in one piece. Senders that pad rows pad the number of
/// luma's, too.
std::size_t sizeInOnePiece(const std::array<Rows, 3>& planes, std::size_t padding) {
    std::size_t size = 0;
    for (const auto& each : planes)
        size += each.stride * (padding > 1 ? (each.count + 1) / 2 * 2 : each.count);
    return size;
}

/// Some senders do not say how far their rows are apart; the size tells.
std::size_t paddingOf(const RawPicture& raw) {
    constexpr std::size_t usual = 4;
    if (raw.planes[0].stride > 0 || !isInOnePiece(raw))
        return 1;
    const bool isPadded = raw.planes[0].bytes.size() == sizeInOnePiece(rowsOf(raw, usual), usual) &&
                          raw.planes[0].bytes.size() != sizeInOnePiece(rowsOf(raw, 1), 1);
    return isPadded ? usual : 1;
}

void copyRows(const Rows& rows, std::span<const std::byte> from, std::uint8_t* to, int stride) {
    if (rows.stride < rows.length || from.size() < rows.size())
        throw MediaError("A picture is shorter than its size says");
    for (std::size_t y = 0; y < rows.count; ++y)
        std::memcpy(to + static_cast<std::ptrdiff_t>(y) * stride, from.data() + y * rows.stride,
                    rows.length);
}

/// With what some cameras append.
bool endsAsJpeg(std::span<const std::byte> bytes) {
    while (!bytes.empty() && bytes.back() == std::byte{0})
        bytes = bytes.first(bytes.size() - 1);
    return bytes.size() > 2 && bytes[bytes.size() - 2] == std::byte{0xFF} &&
           bytes.back() == std::byte{0xD9};
}

CodecHandle openJpegDecoder() {
    prepareLibraries();
    const auto* codec = avcodec_find_decoder(AV_CODEC_ID_MJPEG);
    if (!codec)
        throw MediaError("There is no decoder for motion JPEG");
    CodecHandle context(avcodec_alloc_context3(codec));
    if (!context)
        throw std::bad_alloc();
    context->thread_count = 1; // pictures are small, and must not wait for the next one
    context->max_pixels = std::int64_t{mostPixelsASide} * mostPixelsASide;
    // Whoever asks for the picture tells of it; one line for each would fill the log.
    context->log_level_offset = AV_LOG_DEBUG - AV_LOG_ERROR;
    if (const int result = avcodec_open2(context.get(), codec, nullptr); result < 0)
        throw MediaError(errorText(result));
    return context;
}

} // namespace

AVPixelFormat pixelFormat(RawLayout layout) {
    switch (layout) {
    case RawLayout::bgrx:
    case RawLayout::bgra: // cameras are opaque
        return AV_PIX_FMT_BGR0;
    case RawLayout::rgbx:
    case RawLayout::rgba:
        return AV_PIX_FMT_RGB0;
    case RawLayout::xrgb:
    case RawLayout::argb:
        return AV_PIX_FMT_0RGB;
    case RawLayout::xbgr:
    case RawLayout::abgr:
        return AV_PIX_FMT_0BGR;
    case RawLayout::rgb:
        return AV_PIX_FMT_RGB24;
    case RawLayout::bgr:
        return AV_PIX_FMT_BGR24;
    case RawLayout::gray:
        return AV_PIX_FMT_GRAY8;
    case RawLayout::yuyv:
        return AV_PIX_FMT_YUYV422;
    case RawLayout::uyvy:
        return AV_PIX_FMT_UYVY422;
    case RawLayout::yvyu:
        return AV_PIX_FMT_YVYU422;
    case RawLayout::i420:
    case RawLayout::yv12:
        return AV_PIX_FMT_YUV420P;
    case RawLayout::nv12:
        return AV_PIX_FMT_NV12;
    case RawLayout::nv21:
        return AV_PIX_FMT_NV21;
    case RawLayout::mjpeg:
        break;
    }
    base::fatal("a compressed picture has no pixels");
}

FrameHandle copyPicture(const RawPicture& raw) {
    if (raw.width < 2 || raw.height < 2 || raw.width > mostPixelsASide ||
        raw.height > mostPixelsASide)
        throw MediaError("A picture has an impossible size");
    auto frame = makeFrame();
    frame->width = raw.width;
    frame->height = raw.height;
    frame->format = pixelFormat(raw.layout);
    if (av_frame_get_buffer(frame.get(), align) < 0)
        throw std::bad_alloc();
    const auto padding = paddingOf(raw);
    const auto planes = rowsOf(raw, padding);
    auto rest = raw.planes[0].bytes;
    for (std::size_t i = 0; i < planes.size() && planes.at(i).count > 0; ++i) {
        const auto& rows = planes.at(i);
        copyRows(rows, isInOnePiece(raw) ? rest : raw.planes.at(i).bytes, frame->data[i],
                 frame->linesize[i]);
        const auto count = padding > 1 ? (rows.count + 1) / 2 * 2 : rows.count;
        rest = rest.subspan(std::min(rest.size(), rows.stride * count));
    }
    if (raw.layout == RawLayout::yv12)
        std::swap(frame->data[1], frame->data[2]);
    return frame;
}

const AVFrame& JpegDecoder::decode(std::span<const std::byte> bytes) {
    if (!endsAsJpeg(bytes))
        throw MediaError("A picture is cut off");
    if (!m_codec) {
        m_codec = openJpegDecoder();
        m_packet = makePacket();
        m_frame = makeFrame();
    }
    av_packet_unref(m_packet.get());
    if (av_new_packet(m_packet.get(), static_cast<int>(bytes.size())) < 0)
        throw std::bad_alloc();
    std::memcpy(m_packet->data, bytes.data(), bytes.size());
    int result = avcodec_send_packet(m_codec.get(), m_packet.get());
    if (result >= 0)
        result = avcodec_receive_frame(m_codec.get(), m_frame.get());
    if (result < 0)
        throw MediaError("A picture is damaged: " + errorText(result));
    if (m_frame->decode_error_flags != 0 || (m_frame->flags & AV_FRAME_FLAG_CORRUPT) != 0)
        throw MediaError("A picture is damaged");
    return *m_frame;
}

} // namespace vantro::media::av
