#include "capture/session/SoundTrack.h"

#include "base/Log.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace vantro::capture {
namespace {

using namespace std::chrono_literals;
using media::mixing::channelCount;
using media::mixing::sampleRate;

constexpr std::int32_t nanoseconds = 1'000'000'000;
// Sound is on its way for less than a tenth of a second; the user waits for the stop.
constexpr auto longestWait = 400ms;
// Servers mix up to two seconds ahead, in pieces of 40 ms; more would only take memory.
constexpr std::size_t mostEarly = 256;
// Where the movie cuts into a sound, which would click.
constexpr std::int64_t longestFade = sampleRate * 3 / 1000;
// The writer fills what lies before it.
constexpr std::int64_t lastSilence = sampleRate;

/// Rounded to the nearest.
std::int64_t framesIn(base::HostDuration span) {
    return (span.count() * (sampleRate / 1000) + 500'000) / 1'000'000;
}

base::HostDuration lengthOf(std::int64_t frames) {
    return base::HostDuration(frames * 1'000'000 / (sampleRate / 1000));
}

base::HostTime timeOf(const media::AudioBuffer& buffer) {
    return base::HostTime(base::HostDuration(buffer.presentationTime.rescaled(nanoseconds).value));
}

base::HostTime endOf(const media::AudioBuffer& buffer) {
    return timeOf(buffer) + lengthOf(buffer.frameCount());
}

/// From silence at the beginning, or to silence at the end.
void fade(std::vector<float>& samples, bool isBeginning) {
    const auto frames = std::ssize(samples) / channelCount;
    const auto length = std::min<std::int64_t>(longestFade, frames);
    for (std::int64_t i = 0; i < length; ++i) {
        const auto frame = isBeginning ? i : frames - 1 - i;
        for (std::int64_t channel = 0; channel < channelCount; ++channel)
            samples[static_cast<std::size_t>(frame * channelCount + channel)] *=
                static_cast<float>(i) / static_cast<float>(length);
    }
}

} // namespace

const char* nameOf(SoundKind kind) {
    return kind == SoundKind::system ? "System audio" : "Microphone";
}

SoundTrack::SoundTrack(SoundKind kind, std::unique_ptr<SoundSource> source,
                       media::AssetWriter& writer, std::size_t index, SharedRecordingClock& clock,
                       RecordingProgress& progress, std::function<void()> onSound)
    : m_kind(kind)
    , m_writer(writer)
    , m_index(index)
    , m_clock(clock)
    , m_progress(progress)
    , m_onSound(std::move(onSound))
    , m_source(std::move(source)) {}

SoundTrack::~SoundTrack() = default;

void SoundTrack::start() {
    m_source->start(*this);
}

void SoundTrack::stop() {
    awaitSoundUpTo(m_clock.with([](const RecordingClock& clock) { return clock.stopTime(); }));
    m_source->stop();
    for (const auto& buffer : std::exchange(m_early, {}))
        place(buffer);
    fillUp();
}

void SoundTrack::awaitSoundUpTo(base::HostTime time) {
    std::unique_lock lock(m_mutex);
    m_arrived.wait_until(lock, base::hostNow() + longestWait,
                         [&] { return m_soundUpTo >= time || m_isMissing; });
}

void SoundTrack::sound(media::AudioBuffer buffer) {
    m_level.take(timeOf(buffer), buffer.samples);
    m_progress.sounds(m_kind, m_level);
    const auto end = endOf(buffer);
    m_early.push_back(std::move(buffer));
    const auto now = base::hostNow();
    while (!m_early.empty() && (endOf(m_early.front()) <= now || m_early.size() > mostEarly)) {
        place(m_early.front());
        m_early.pop_front();
    }
    const std::lock_guard lock(m_mutex);
    m_soundUpTo = end;
    m_arrived.notify_all();
}

/// Puts what of it is part of the movie into its place.
void SoundTrack::place(const media::AudioBuffer& buffer) {
    const auto from = timeOf(buffer);
    const auto to = endOf(buffer);
    const auto parts =
        m_clock.with([&](const RecordingClock& clock) { return clock.parts(from, to); });
    for (const auto& part : parts) {
        const auto first = framesIn(part.from - from);
        const auto end = std::min(framesIn(part.to - from), buffer.frameCount());
        std::vector<float> samples(buffer.samples.begin() + first * channelCount,
                                   buffer.samples.begin() + end * channelCount);
        if (part.from > from)
            fade(samples, true);
        if (part.to < to)
            fade(samples, false);
        append({.presentationTime = {.value = part.movieTime.count(), .timescale = nanoseconds},
                .samples = std::move(samples)});
    }
}

void SoundTrack::append(media::AudioBuffer buffer) {
    if (m_hasFailed || buffer.samples.empty())
        return;
    const auto end = base::HostDuration(buffer.presentationTime.rescaled(nanoseconds).value) +
                     lengthOf(buffer.frameCount());
    if (m_writer.appendAudio(m_index, std::move(buffer))) {
        m_end = end;
        if (!m_hasSound.exchange(true))
            m_onSound();
    } else if (const auto failure = m_writer.audioFailure(m_index)) {
        m_hasFailed = true;
        m_progress.lost(nameOf(m_kind), *failure);
    }
}

/// The source has stopped.
void SoundTrack::fillUp() {
    const auto length =
        m_clock.with([](const RecordingClock& clock) { return clock.length(clock.stopTime()); });
    const auto missing = std::min(framesIn(length - m_end), lastSilence);
    if (!m_hasSound || missing <= 0)
        return;
    const auto begin = length - lengthOf(missing);
    append({.presentationTime = {.value = begin.count(), .timescale = nanoseconds},
            .samples = std::vector<float>(static_cast<std::size_t>(missing * channelCount))});
}

void SoundTrack::soundMissing(const std::string& reason) {
    base::logWarning("{}: {}; recording silence until it returns", nameOf(m_kind), reason);
    m_progress.lost(nameOf(m_kind), reason);
    const std::lock_guard lock(m_mutex);
    m_isMissing = true;
    m_arrived.notify_all();
}

void SoundTrack::soundReturned() {
    base::logInfo("{} has returned", nameOf(m_kind));
    m_progress.returned(nameOf(m_kind));
    const std::lock_guard lock(m_mutex);
    m_isMissing = false;
}

} // namespace vantro::capture
