#include "capture/sound/SteadySound.h"

#include "base/Fatal.h"
#include "media/values/AudioBuffer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace vantro::capture::sound {
namespace {

using namespace std::chrono_literals;
using media::mixing::channelCount;
using media::mixing::sampleRate;

// Beyond what jitter leaves of a second's arrivals. What lasts is sound that was lost: the
// controller would take a minute for it.
constexpr double astray = 0.03; // seconds
constexpr auto lastingAstray = 700ms;
// A device that is there delivers far more often.
constexpr auto stalled = 1s;
// Silence stays so far behind, so that it takes nothing's place that is on its way.
constexpr auto silenceDelay = 500ms;
constexpr std::int64_t silencePiece = sampleRate / 10;

} // namespace

SteadySound::SteadySound(int channels, Sink sink)
    : m_channels(static_cast<std::size_t>(channels))
    , m_sink(std::move(sink))
    , m_resampler(channels) {}

void SteadySound::move(State to) {
    const bool isPossible = to == State::waiting ||
                            (m_state == State::waiting && to == State::settling) ||
                            (m_state == State::settling && to == State::running);
    base::require(isPossible, "recorded sound in an impossible state");
    m_state = to;
}

void SteadySound::timed(base::HostTime now, std::int64_t frames, base::HostTime at) {
    m_times.observe(now, frames, at);
}

void SteadySound::captured(base::HostTime now, std::span<const float> samples) {
    if (samples.empty())
        return;
    m_latest = now;
    if (m_state == State::running) {
        follow(now, samples.size() / m_channels);
        return take(samples);
    }
    if (m_state == State::waiting)
        move(State::settling);
    m_held.insert(m_held.end(), samples.begin(), samples.end());
    if (m_times.isSettled())
        begin();
}

/// The first sample's time is known as well as it will be.
void SteadySound::begin() {
    move(State::running);
    const auto first = m_times.timeOf(0);
    m_inserted = m_fed;
    if (m_start)
        shift(base::inSeconds(first - outputTime()) -
              (static_cast<double>(m_fed) - m_resampler.position()) / sampleRate);
    else
        m_start = first;
    take(std::exchange(m_held, {}));
}

/// Keeps in step with the device.
void SteadySound::follow(base::HostTime now, std::size_t frames) {
    const auto belongsAt = m_times.timeOf(m_resampler.position() - static_cast<double>(m_inserted));
    const double error = base::inSeconds(belongsAt - outputTime());
    if (std::abs(error) < astray) {
        m_astraySince.reset();
        m_stretch = m_controller.stretch(error, static_cast<double>(frames) / sampleRate);
    } else if (!m_astraySince) {
        m_astraySince = now;
    } else if (now - *m_astraySince >= lastingAstray) {
        m_astraySince.reset();
        shift(error);
    }
}

/// What follows begins so much later than what went before has ended, or earlier.
void SteadySound::shift(double seconds) {
    const auto frames = std::llround(seconds * sampleRate);
    m_inserted += frames;
    if (frames >= 0)
        addSilence(frames);
    else
        m_leftOut -= frames;
}

void SteadySound::take(std::span<const float> samples) {
    const auto frames = static_cast<std::int64_t>(samples.size() / m_channels);
    const auto leftOut = std::min(m_leftOut, frames);
    m_leftOut -= leftOut;
    put(samples.subspan(static_cast<std::size_t>(leftOut) * m_channels));
}

void SteadySound::addSilence(std::int64_t frames) {
    const std::vector<float> silence(static_cast<std::size_t>(std::min(frames, silencePiece)) *
                                     m_channels);
    for (; frames > 0; frames -= silencePiece)
        put(std::span(silence).first(static_cast<std::size_t>(std::min(frames, silencePiece)) *
                                     m_channels));
}

void SteadySound::put(std::span<const float> samples) {
    m_output.clear();
    m_resampler.process(samples, m_stretch, m_output);
    m_fed += static_cast<std::int64_t>(samples.size() / m_channels);
    if (m_output.empty())
        return;
    const auto frames = m_output.size() / m_channels;
    if (m_channels == 1) { // the same on the left and on the right
        m_output.resize(frames * channelCount);
        for (auto frame = frames; frame-- > 0;)
            m_output[frame * 2] = m_output[frame * 2 + 1] = m_output[frame];
    }
    m_sink(outputTime(), m_output);
    m_given += static_cast<std::int64_t>(frames);
}

base::HostTime SteadySound::outputTime() const {
    // Nothing is given out before the start is known.
    return m_start.value_or(base::HostTime()) +
           base::HostDuration(m_given * 1'000'000 / (sampleRate / 1000));
}

void SteadySound::interrupted() {
    finish();
    move(State::waiting);
    m_times.reset();
    m_controller = {};
    m_stretch = 0;
    m_held.clear();
    m_leftOut = 0;
    m_astraySince.reset();
}

void SteadySound::passTime(base::HostTime now) {
    if (m_state != State::waiting && now - m_latest > stalled)
        interrupted();
    if (m_state != State::waiting || !m_start)
        return;
    const double missing = base::inSeconds(now - silenceDelay - outputTime());
    if (missing > 0)
        addSilence(static_cast<std::int64_t>(missing * sampleRate));
}

void SteadySound::finish() {
    if (m_state == State::settling && !m_times.isEmpty())
        begin();
}

} // namespace vantro::capture::sound
