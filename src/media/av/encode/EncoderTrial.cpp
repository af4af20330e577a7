#include "media/av/encode/EncoderTrial.h"

#include "media/av/Libraries.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <span>
#include <vector>

#include <fmt/format.h>

namespace vantro::media::av {
namespace {

constexpr int pictureCount = 3;
// What quantisation may change in a flat area, of 255 levels; a swapped plane or range is more.
constexpr int largestColorError = 6;

using Planes = std::array<std::uint8_t, 3>;
constexpr Planes leftColor{81, 90, 200};
constexpr Planes rightColor{170, 150, 60};

/// Two flat halves: mirrored, shifted or swapped planes show.
std::shared_ptr<const PixelBuffer> trialPicture(const VideoSettings& settings) {
    auto picture = PixelBuffer::allocate(PixelFormat::i420, settings.width, settings.height);
    for (int plane = 0; plane < picture->planeCount(); ++plane) {
        const auto index = static_cast<std::size_t>(plane);
        const int width = plane == 0 ? settings.width : settings.width / 2;
        for (int y = 0; y < picture->planeHeight(plane); ++y) {
            auto* row = picture->mutableRow(plane, y);
            std::fill_n(row, width / 2, leftColor[index]);
            std::fill(row + width / 2, row + width, rightColor[index]);
        }
    }
    return picture;
}

struct Encoded {
    std::vector<PacketHandle> packets;
    std::string fault;
};

Encoded encodeTrial(CodecSession& encoder, const VideoSettings& settings) {
    Encoded made;
    const auto keep = [&](EncodedPacket& packet) {
        made.packets.emplace_back(av_packet_clone(&packet.raw()));
    };
    const auto picture = trialPicture(settings);
    const auto& timeBase = encoder.context().time_base;
    const auto step = static_cast<std::int64_t>(timeBase.den / settings.expectedFrameRate);
    for (int index = 0; index <= pictureCount; ++index) {
        const auto frame = index < pictureCount ? encoderFrame(picture, index * step) : nullptr;
        if (const auto encoded = encoder.encode(frame.get(), keep); !encoded) {
            made.fault = encoded.error();
            return made;
        }
    }
    for (std::size_t index = 0; index < made.packets.size(); ++index) {
        const auto& packet = made.packets[index];
        if (!packet || std::abs(packet->pts - static_cast<std::int64_t>(index) * step) > step / 2)
            made.fault = "it changes the order of the pictures";
    }
    if (made.packets.size() != pictureCount)
        made.fault = fmt::format("it made {} pictures of {}", made.packets.size(), pictureCount);
    return made;
}

CodecHandle openDecoder(const AVCodecContext& encoder) {
    const AVCodec* codec = avcodec_find_decoder(AV_CODEC_ID_H264);
    CodecHandle decoder(avcodec_alloc_context3(codec));
    const Handle<AVCodecParameters, avcodec_parameters_free> parameters(avcodec_parameters_alloc());
    if (!decoder || !parameters ||
        avcodec_parameters_from_context(parameters.get(), &encoder) < 0 ||
        avcodec_parameters_to_context(decoder.get(), parameters.get()) < 0)
        return {};
    // What the header says counts, not what was wished for.
    decoder->color_primaries = AVCOL_PRI_UNSPECIFIED;
    decoder->color_trc = AVCOL_TRC_UNSPECIFIED;
    decoder->colorspace = AVCOL_SPC_UNSPECIFIED;
    decoder->color_range = AVCOL_RANGE_UNSPECIFIED;
    decoder->profile = FF_PROFILE_UNKNOWN;
    decoder->thread_count = 1;
    return avcodec_open2(decoder.get(), codec, nullptr) < 0 ? CodecHandle{} : std::move(decoder);
}

bool hasColor(const AVFrame& frame, int quarter, const Planes& wanted) {
    for (std::size_t plane = 0; plane < wanted.size(); ++plane) {
        const int shrunk = plane == 0 ? 1 : 2;
        const int x = frame.width * quarter / 4 / shrunk;
        const int y = frame.height / 2 / shrunk;
        const int found = frame.data[plane][y * frame.linesize[plane] + x];
        if (std::abs(found - wanted[plane]) > largestColorError)
            return false;
    }
    return true;
}

std::string faultInPicture(const AVCodecContext& decoder, const AVFrame& frame,
                           const VideoSettings& settings) {
    if (decoder.profile != FF_PROFILE_H264_HIGH)
        return "it does not write the High profile";
    if (frame.width != settings.width || frame.height != settings.height)
        return fmt::format("it makes pictures of {}x{}", frame.width, frame.height);
    const bool isTagged =
        frame.color_primaries == AVCOL_PRI_BT709 && frame.color_trc == AVCOL_TRC_BT709 &&
        frame.colorspace == AVCOL_SPC_BT709 && frame.color_range != AVCOL_RANGE_JPEG;
    if (!isTagged)
        return "it does not say what its colors mean";
    const bool isRight = frame.format == AV_PIX_FMT_YUV420P && hasColor(frame, 1, leftColor) &&
                         hasColor(frame, 3, rightColor);
    return isRight ? "" : "its pictures have wrong colors";
}

std::string faultInPackets(const AVCodecContext& encoder, std::span<const PacketHandle> packets,
                           const VideoSettings& settings) {
    const auto decoder = openDecoder(encoder);
    if (!decoder)
        return "its pictures cannot be decoded";
    const auto frame = makeFrame();
    std::string fault;
    int decoded = 0;
    for (std::size_t index = 0; index <= packets.size() && fault.empty(); ++index) {
        const AVPacket* packet = index < packets.size() ? packets[index].get() : nullptr;
        if (avcodec_send_packet(decoder.get(), packet) < 0)
            fault = "its pictures cannot be decoded";
        while (fault.empty() && avcodec_receive_frame(decoder.get(), frame.get()) >= 0) {
            ++decoded;
            fault = faultInPicture(*decoder, *frame, settings);
        }
    }
    if (fault.empty() && decoded != pictureCount)
        fault = fmt::format("{} of its {} pictures can be decoded", decoded, pictureCount);
    return fault;
}

} // namespace

std::string faultInTrial(CodecSession encoder, const VideoSettings& settings) {
    const auto made = encodeTrial(encoder, settings);
    if (!made.fault.empty())
        return made.fault;
    return faultInPackets(encoder.context(), made.packets, settings);
}

} // namespace vantro::media::av
