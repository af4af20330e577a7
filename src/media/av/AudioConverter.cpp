#include "media/av/AudioConverter.h"

#include "media/av/Libraries.h"
#include "media/values/AudioBuffer.h"
#include "media/values/MediaError.h"

#include <array>
#include <new>

#include <fmt/format.h>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
}

namespace vantro::media::av {
namespace {

/// The layout to mix from; sound that does not tell gets the usual one for its channels.
AVChannelLayout usableLayout(const AVFrame& frame) {
    if (frame.ch_layout.order == AV_CHANNEL_ORDER_NATIVE)
        return frame.ch_layout;
    AVChannelLayout layout{};
    av_channel_layout_default(&layout, frame.ch_layout.nb_channels);
    return layout;
}

} // namespace

bool AudioConverter::fits(const AVFrame& frame) const {
    return m_resampler && frame.sample_rate == m_inputRate && frame.format == m_inputFormat &&
           frame.ch_layout.nb_channels == m_inputChannels;
}

std::int64_t AudioConverter::heldBack() const {
    return m_resampler ? swr_get_delay(m_resampler.get(), mixing::sampleRate) : 0;
}

void AudioConverter::open(const AVFrame& frame) {
    AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
    AVChannelLayout input = usableLayout(frame);
    SwrContext* context = nullptr;
    const int result = swr_alloc_set_opts2(&context, &stereo, AV_SAMPLE_FMT_FLT, mixing::sampleRate,
                                           &input, static_cast<AVSampleFormat>(frame.format),
                                           frame.sample_rate, 0, nullptr);
    m_resampler.reset(context);
    if (result < 0)
        throw MediaError("Sound of this kind cannot be converted: " + errorText(result));
    av_opt_set_double(context, "rematrix_maxval", 1.0, 0);
    constexpr std::array<double, 2> both{1.0, 1.0};
    if (input.nb_channels == 1)
        swr_set_matrix(context, both.data(), 1);
    takeLastErrorLine();
    if (const int opened = swr_init(context); opened < 0) {
        m_resampler.reset();
        throw MediaError(fmt::format("Sound with {} channels at {} Hz cannot be converted: {}",
                                     frame.ch_layout.nb_channels, frame.sample_rate,
                                     errorText(opened)));
    }
    m_inputRate = frame.sample_rate;
    m_inputFormat = frame.format;
    m_inputChannels = frame.ch_layout.nb_channels;
}

void AudioConverter::convert(const AVFrame& frame, std::vector<float>& output) {
    if (!fits(frame)) {
        drain(output);
        open(frame);
    }
    run(&frame, output);
}

void AudioConverter::drain(std::vector<float>& output) {
    if (m_resampler)
        run(nullptr, output);
    m_resampler.reset();
}

void AudioConverter::run(const AVFrame* frame, std::vector<float>& output) {
    const int inputCount = frame != nullptr ? frame->nb_samples : 0;
    const int room = swr_get_out_samples(m_resampler.get(), inputCount);
    if (room < 0)
        throw MediaError("Sound of this kind cannot be converted: " + errorText(room));
    const std::size_t before = output.size();
    output.resize(before + static_cast<std::size_t>(room) * mixing::channelCount);
    auto* target = reinterpret_cast<std::uint8_t*>(output.data() + before);
    // The library's parameter is not const in every release.
    auto** input =
        frame != nullptr ? const_cast<const std::uint8_t**>(frame->extended_data) : nullptr;
    const int made = swr_convert(m_resampler.get(), &target, room, input, inputCount);
    if (made < 0)
        throw MediaError("Sound of this kind cannot be converted: " + errorText(made));
    output.resize(before + static_cast<std::size_t>(made) * mixing::channelCount);
}

} // namespace vantro::media::av
