#include "media/av/encode/LiveEncoder.h"

#include "media/av/CodecHeader.h"
#include "media/av/Libraries.h"
#include "media/av/encode/EncoderSetup.h"
#include "media/av/encode/LiveRate.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <thread>
#include <vector>

#include <fmt/format.h>

extern "C" {
#include <libavutil/log.h>
#include <x264.h>
}

namespace vantro::media::av {
namespace {

constexpr auto codecName = "libx264";
// Slices of one picture are encoded side by side; more of them cost compression for nothing.
constexpr unsigned mostSliceThreads = 4;

// The library takes these as the middle of the quantizers it may be given, and as the distances of
// their ends from it.
constexpr int middleQuantizer = 30;
constexpr float widestRange = 10.0F; // a factor of the quantizer's step: 20 quantizers

struct CloseEncoder {
    void operator()(x264_t* encoder) const { x264_encoder_close(encoder); }
};
using EncoderHandle = std::unique_ptr<x264_t, CloseEncoder>;

void logLine(void* codec, int /*level*/, const char* format, std::va_list arguments) {
    av_vlog(codec, AV_LOG_ERROR, format, arguments);
}

/// The lowest level of the standard that the pictures and twice their mean rate keep to.
int levelFor(const VideoSettings& settings) {
    constexpr double kilobit = 1000;
    constexpr double highProfile = 1.25; // times the table's rates, which are Main's
    const std::int64_t columns = (settings.width + 15) / 16;
    const std::int64_t rows = (settings.height + 15) / 16;
    const double blocks = static_cast<double>(columns * rows);
    const auto* level = x264_levels;
    const auto isEnough = [&] {
        const std::int64_t longest = std::max(columns, rows);
        return level->frame_size >= blocks && 8L * level->frame_size >= longest * longest &&
               level->mbps >= blocks * settings.expectedFrameRate &&
               level->bitrate * highProfile * kilobit >= 2.0 * settings.averageBitRate;
    };
    while (level[1].level_idc != 0 && !isEnough())
        ++level;
    return level->level_idc;
}

/// `codec` has been told about the pictures.
x264_param_t parametersFor(AVCodecContext& codec, const VideoSettings& settings) {
    x264_param_t parameters;
    if (x264_param_default_preset(&parameters, "ultrafast", "zerolatency") < 0)
        throw MediaError("The encoder libx264 does not know its presets");
    parameters.pf_log = logLine;
    parameters.p_log_private = &codec;
    parameters.i_log_level = X264_LOG_ERROR;
    parameters.i_threads =
        static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, mostSliceThreads));
    parameters.i_width = codec.width;
    parameters.i_height = codec.height;
    parameters.i_csp = X264_CSP_I420;
    parameters.i_level_idc = levelFor(settings);
    parameters.i_fps_num = static_cast<std::uint32_t>(codec.framerate.num);
    parameters.i_fps_den = static_cast<std::uint32_t>(codec.framerate.den);
    parameters.i_timebase_num = static_cast<std::uint32_t>(codec.time_base.num);
    parameters.i_timebase_den = static_cast<std::uint32_t>(codec.time_base.den);
    parameters.vui.i_colorprim = codec.color_primaries;
    parameters.vui.i_transfer = codec.color_trc;
    parameters.vui.i_colmatrix = codec.colorspace;
    parameters.vui.b_fullrange = 0;
    parameters.vui.i_chroma_loc = codec.chroma_sample_location - 1; // libav counts from 1
    parameters.i_keyint_max = X264_KEYINT_MAX_INFINITE; // keyframes come by time, not by count
    parameters.b_repeat_headers = 0;
    // The preset leaves out what makes the High profile, of which 8x8 transforms cost least:
    // arithmetic coding would save some bytes for a third more work, and double that of each
    // decoding, of which an edit needs many.
    parameters.analyse.b_transform_8x8 = 1;
    parameters.rc.i_rc_method = X264_RC_CQP;
    parameters.rc.i_qp_constant = middleQuantizer;
    parameters.rc.f_ip_factor = widestRange;
    parameters.rc.f_pb_factor = widestRange;
    if (x264_param_apply_profile(&parameters, "high") < 0)
        throw MediaError("The encoder libx264 lacks the High profile");
    return parameters;
}

class LiveEncoder {
  public:
    LiveEncoder(AVCodecContext& codec, const VideoSettings& settings);

    /// Both as their namesakes of libavcodec.
    int submit(const AVFrame* picture);
    int receive(AVPacket& packet);

  private:
    void keepHeader(AVCodecContext& codec);
    bool prepareSearch(bool isKeyframe);
    int keep(const x264_picture_t& picture, const std::uint8_t* bytes, int size);

    x264_param_t m_parameters;
    EncoderHandle m_encoder;
    LiveRate m_rate;
    double m_tick; // seconds
    PacketHandle m_packet = makePacket();
    bool m_hasEnded = false;
    bool m_isAfterKeyframe = false;
};

LiveEncoder::LiveEncoder(AVCodecContext& codec, const VideoSettings& settings)
    : m_parameters(parametersFor(codec, settings))
    , m_rate(static_cast<double>(settings.averageBitRate))
    , m_tick(av_q2d(codec.time_base)) {
    takeLastErrorLine();
    m_encoder.reset(x264_encoder_open(&m_parameters));
    if (!m_encoder)
        throw MediaError(fmt::format("Cannot encode {}x{} pictures: {}", codec.width, codec.height,
                                     takeLastErrorLine()));
    keepHeader(codec);
}

void LiveEncoder::keepHeader(AVCodecContext& codec) {
    x264_nal_t* units = nullptr;
    int count = 0;
    if (x264_encoder_headers(m_encoder.get(), &units, &count) < 0)
        throw MediaError("Cannot encode: the encoder libx264 has no header");
    std::vector<std::uint8_t> header;
    for (const auto& unit : std::span(units, static_cast<std::size_t>(count)))
        if (unit.i_type == NAL_SPS || unit.i_type == NAL_PPS)
            header.insert(header.end(), unit.p_payload, unit.p_payload + unit.i_payload);
    setHeader(codec, header);
    codec.profile = FF_PROFILE_H264_HIGH;
    codec.level = m_parameters.i_level_idc;
}

/// Motion is followed from picture to picture by what the one before knows of it. A keyframe knows
/// nothing, so the picture after it searches wider; else a page that is being scrolled would cost
/// as much as a keyframe until it rests.
bool LiveEncoder::prepareSearch(bool isKeyframe) {
    const int method = m_isAfterKeyframe && !isKeyframe ? X264_ME_UMH : X264_ME_DIA;
    m_isAfterKeyframe = isKeyframe;
    if (method == m_parameters.analyse.i_me_method)
        return true;
    m_parameters.analyse.i_me_method = method;
    return x264_encoder_reconfig(m_encoder.get(), &m_parameters) == 0;
}

int LiveEncoder::submit(const AVFrame* picture) {
    if (picture == nullptr) {
        m_hasEnded = true;
        return 0;
    }
    const bool isKeyframe = picture->pict_type == AV_PICTURE_TYPE_I;
    if (!prepareSearch(isKeyframe))
        return AVERROR_EXTERNAL;
    x264_picture_t input;
    x264_picture_init(&input);
    input.img.i_csp = X264_CSP_I420;
    input.img.i_plane = 3;
    std::copy_n(picture->data, 3, input.img.plane);
    std::copy_n(picture->linesize, 3, input.img.i_stride);
    input.i_pts = picture->pts;
    input.i_type = isKeyframe ? X264_TYPE_IDR : X264_TYPE_AUTO;
    input.i_qpplus1 = m_rate.quantizer(static_cast<double>(picture->pts) * m_tick) + 1;
    x264_nal_t* units = nullptr;
    int count = 0;
    x264_picture_t output;
    const int size = x264_encoder_encode(m_encoder.get(), &units, &count, &input, &output);
    if (size <= 0) // it holds nothing back
        return AVERROR_EXTERNAL;
    m_rate.encoded(static_cast<std::size_t>(size));
    return keep(output, units[0].p_payload, size);
}

int LiveEncoder::keep(const x264_picture_t& picture, const std::uint8_t* bytes, int size) {
    if (const int result = av_new_packet(m_packet.get(), size); result < 0)
        return result;
    std::memcpy(m_packet->data, bytes, static_cast<std::size_t>(size));
    m_packet->pts = picture.i_pts;
    m_packet->dts = picture.i_dts;
    m_packet->flags = picture.b_keyframe != 0 ? AV_PKT_FLAG_KEY : 0;
    return 0;
}

int LiveEncoder::receive(AVPacket& packet) {
    if (m_packet->data == nullptr)
        return m_hasEnded ? AVERROR_EOF : AVERROR(EAGAIN);
    av_packet_move_ref(&packet, m_packet.get());
    return 0;
}

} // namespace

CodecSession openLiveEncoder(const VideoSettings& settings) {
    auto codec = makeEncoder(codecName, settings);
    const auto encoder = std::make_shared<LiveEncoder>(*codec, settings);
    return {codecName, std::move(codec),
            [encoder](AVCodecContext*, const AVFrame* picture) { return encoder->submit(picture); },
            [encoder](AVCodecContext*, AVPacket* packet) { return encoder->receive(*packet); }};
}

} // namespace vantro::media::av
