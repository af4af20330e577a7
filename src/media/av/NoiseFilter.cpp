#include "media/av/NoiseFilter.h"

#include "media/av/Libraries.h"
#include "media/values/AudioBuffer.h"
#include "media/values/MediaError.h"

#include <algorithm>
#include <new>
#include <string>

#include <fmt/format.h>

extern "C" {
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
}

namespace vantro::media::av {
namespace {

constexpr int channels = mixing::channelCount;
// Two of the filter's three steps of 1/80 s, by which its times are late.
constexpr std::int64_t delay = 2 * mixing::sampleRate / 80;
// Room and amplifier noise lies below −40 dB of full scale; above that it would take quiet speech
// for noise. Taking off more than 15 dB is heard as warbling.
constexpr const char* settings = "noise_floor=-40:noise_reduction=15";

void check(int result) {
    if (result >= 0)
        return;
    const auto detail = takeLastErrorLine();
    throw MediaError("Noise cannot be reduced: " + (detail.empty() ? errorText(result) : detail));
}

AVFilterContext* add(AVFilterGraph& graph, const char* name, const std::string& arguments) {
    AVFilterContext* filter = nullptr;
    check(avfilter_graph_create_filter(&filter, avfilter_get_by_name(name), name, arguments.c_str(),
                                       nullptr, &graph));
    return filter;
}

FrameHandle planarFrame(std::span<const float> samples) {
    auto frame = makeFrame();
    frame->format = AV_SAMPLE_FMT_FLTP;
    frame->sample_rate = mixing::sampleRate;
    frame->nb_samples = static_cast<int>(samples.size() / channels);
    av_channel_layout_default(&frame->ch_layout, channels);
    if (av_frame_get_buffer(frame.get(), 0) < 0)
        throw std::bad_alloc();
    for (std::size_t channel = 0; channel < channels; ++channel) {
        auto* plane = reinterpret_cast<float*>(frame->extended_data[channel]);
        for (std::size_t i = 0; i * channels < samples.size(); ++i)
            plane[i] = samples[i * channels + channel];
    }
    return frame;
}

} // namespace

NoiseFilter::NoiseFilter() : m_graph(avfilter_graph_alloc()), m_leftOut(delay) {
    prepareLibraries();
    if (!m_graph)
        throw std::bad_alloc();
    takeLastErrorLine();
    m_graph->nb_threads = 1; // a thread for each channel costs more than it saves
    m_input =
        add(*m_graph, "abuffer",
            fmt::format("sample_fmt=fltp:channel_layout=stereo:sample_rate={0}:time_base=1/{0}",
                        mixing::sampleRate));
    auto* reduction = add(*m_graph, "afftdn", settings);
    m_output = add(*m_graph, "abuffersink", {});
    check(avfilter_link(m_input, 0, reduction, 0));
    check(avfilter_link(reduction, 0, m_output, 0));
    check(avfilter_graph_config(m_graph.get(), nullptr));
}

void NoiseFilter::process(std::span<const float> samples, std::vector<float>& output) {
    if (samples.empty())
        return;
    const auto input = planarFrame(samples);
    input->pts = m_position;
    m_position += input->nb_samples;
    check(av_buffersrc_add_frame(m_input, input.get()));
    const auto made = makeFrame();
    int result = 0;
    while ((result = av_buffersink_get_frame(m_output, made.get())) >= 0) {
        const auto left = std::min<std::int64_t>(m_leftOut, made->nb_samples);
        m_leftOut -= left;
        for (auto i = left; i < made->nb_samples; ++i)
            for (int channel = 0; channel < channels; ++channel)
                output.push_back(reinterpret_cast<float*>(made->extended_data[channel])[i]);
        av_frame_unref(made.get());
    }
    if (result != AVERROR(EAGAIN))
        check(result);
}

} // namespace vantro::media::av
