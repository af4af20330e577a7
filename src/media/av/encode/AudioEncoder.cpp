#include "media/av/encode/AudioEncoder.h"

#include "media/av/Libraries.h"
#include "media/values/AudioBuffer.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <new>

namespace vantro::media::av {
namespace {

constexpr std::size_t channels = mixing::channelCount;

FrameHandle makeSoundFrame(const AVCodecContext& codec, std::span<const float> samples) {
    auto frame = makeFrame();
    frame->format = codec.sample_fmt;
    frame->sample_rate = codec.sample_rate;
    frame->nb_samples = static_cast<int>(samples.size() / channels);
    av_channel_layout_copy(&frame->ch_layout, &codec.ch_layout);
    if (av_frame_get_buffer(frame.get(), 0) < 0)
        throw std::bad_alloc();
    for (int channel = 0; channel < codec.ch_layout.nb_channels; ++channel) {
        auto* plane = reinterpret_cast<float*>(frame->extended_data[channel]);
        for (std::size_t i = 0; i * channels < samples.size(); ++i)
            plane[i] = codec.ch_layout.nb_channels == 1
                           ? (samples[i * channels] + samples[i * channels + 1]) / 2
                           : samples[i * channels + static_cast<std::size_t>(channel)];
    }
    return frame;
}

} // namespace

AudioEncoder::AudioEncoder(const AudioSettings& settings) {
    prepareLibraries();
    const AVCodec* codec = avcodec_find_encoder_by_name("aac");
    if (codec == nullptr)
        throw MediaError("The AAC encoder is not installed");
    m_codec.reset(avcodec_alloc_context3(codec));
    if (!m_codec)
        throw std::bad_alloc();
    m_codec->sample_fmt = AV_SAMPLE_FMT_FLTP;
    m_codec->sample_rate = mixing::sampleRate;
    av_channel_layout_default(&m_codec->ch_layout, settings.channelCount);
    m_codec->time_base = {1, mixing::sampleRate};
    m_codec->bit_rate = settings.averageBitRate;
    m_codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    takeLastErrorLine();
    if (const int result = avcodec_open2(m_codec.get(), codec, nullptr); result < 0) {
        const auto detail = takeLastErrorLine();
        throw MediaError("Cannot encode sound: " + (detail.empty() ? errorText(result) : detail));
    }
}

void AudioEncoder::encode(std::span<const float> samples, const PacketSink& sink) {
    m_waiting.insert(m_waiting.end(), samples.begin(), samples.end());
    const auto frameSize = static_cast<std::size_t>(m_codec->frame_size);
    while (m_waiting.size() >= frameSize * channels)
        encodeWaiting(frameSize, sink);
}

void AudioEncoder::drain(const PacketSink& sink) {
    if (!m_waiting.empty())
        encodeWaiting(m_waiting.size() / channels, sink);
    send(nullptr, sink);
}

void AudioEncoder::encodeWaiting(std::size_t frames, const PacketSink& sink) {
    const auto count = frames * channels;
    const auto frame = makeSoundFrame(*m_codec, std::span(m_waiting).first(count));
    frame->pts = m_position;
    m_position += static_cast<std::int64_t>(frames);
    m_waiting.erase(m_waiting.begin(), m_waiting.begin() + static_cast<std::ptrdiff_t>(count));
    send(frame.get(), sink);
}

void AudioEncoder::send(const AVFrame* frame, const PacketSink& sink) {
    int result = avcodec_send_frame(m_codec.get(), frame);
    while (result >= 0) {
        result = avcodec_receive_packet(m_codec.get(), &m_packet.raw());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return;
        if (result >= 0)
            sink(m_packet);
        m_packet.clear();
    }
    throw MediaError("Encoding sound failed: " + errorText(result));
}

} // namespace vantro::media::av
