#include "media/sound/AudioSource.h"

#include "media/values/AudioBuffer.h"

#include <algorithm>

namespace vantro::media::sound {
namespace {

constexpr int channels = mixing::channelCount;
// Behind the place that was read last; time-stretching looks back by less than a tenth of it.
constexpr std::int64_t keptHistory = mixing::sampleRate / 5;
// Decoding so far is quicker than a jump with its preroll.
constexpr std::int64_t nearAhead = mixing::sampleRate;

} // namespace

AudioSource::AudioSource(const MovieReference& movie, int trackID) : m_decoder(movie, trackID) {}

std::int64_t AudioSource::bufferEnd() const {
    return m_bufferStart + static_cast<std::int64_t>(m_buffer.size()) / channels;
}

void AudioSource::read(std::int64_t position, std::span<float> samples) {
    if (position < 0) {
        const auto silent =
            std::min(static_cast<std::size_t>(-position) * channels, samples.size());
        std::fill_n(samples.begin(), silent, 0.0F);
        samples = samples.subspan(silent);
        position = 0;
    }
    if (samples.empty())
        return;
    if (m_isStale || position < m_bufferStart || position > bufferEnd() + nearAhead)
        moveTo(position);
    const auto end = position + static_cast<std::int64_t>(samples.size()) / channels;
    fillUpTo(end);
    std::copy_n(m_buffer.begin() + (position - m_bufferStart) * channels, samples.size(),
                samples.begin());
    forgetBefore(position - keptHistory);
}

void AudioSource::setNoiseReduced(bool reduced) {
    m_isStale = m_isStale || reduced != m_isNoiseReduced;
    m_isNoiseReduced = reduced;
}

void AudioSource::moveTo(std::int64_t position) {
    m_noise.reset();
    if (m_isNoiseReduced) {
        m_noise.emplace();
        position = std::max<std::int64_t>(position - av::NoiseFilter::preroll, 0);
    }
    m_decoder.seek(position);
    m_buffer.clear();
    m_bufferStart = m_put = position;
    m_next.reset();
    m_ended = false;
    m_isStale = false;
}

void AudioSource::fillUpTo(std::int64_t end) {
    while (bufferEnd() < end) {
        if (!m_next && !m_ended) {
            m_next = m_decoder.next();
            m_ended = !m_next;
        }
        if (!m_next || m_next->position > m_put) {
            const auto missing = end - bufferEnd();
            putSilence(m_next ? std::min(m_next->position - m_put, missing) : missing);
            continue;
        }
        // What lies before is there already, or was jumped over.
        const auto known = static_cast<std::size_t>(m_put - m_next->position) * channels;
        if (known < m_next->samples.size())
            put(std::span(m_next->samples).subspan(known));
        m_next.reset();
    }
}

void AudioSource::put(std::span<const float> samples) {
    m_put += static_cast<std::int64_t>(samples.size()) / channels;
    if (m_noise)
        m_noise->process(samples, m_buffer);
    else
        m_buffer.insert(m_buffer.end(), samples.begin(), samples.end());
}

void AudioSource::putSilence(std::int64_t frames) {
    put(std::vector<float>(static_cast<std::size_t>(frames) * channels));
}

void AudioSource::forgetBefore(std::int64_t position) {
    // In large steps, so that moving the rest up costs little.
    if (position - m_bufferStart < mixing::sampleRate)
        return;
    m_buffer.erase(m_buffer.begin(), m_buffer.begin() + (position - m_bufferStart) * channels);
    m_bufferStart = position;
}

} // namespace vantro::media::sound
