#include "capture/SoundTrack.h"

#include "base/Log.h"

#include <fmt/format.h>

namespace vantro::capture {

const char* nameOf(SoundKind kind) {
    return kind == SoundKind::system ? "System audio" : "Microphone";
}

SoundTrack::SoundTrack(SoundKind kind, std::unique_ptr<SoundSource> source,
                       media::AssetWriter& writer, std::size_t index, SharedRecordingClock& clock,
                       RecordingProgress& progress)
    : m_kind(kind)
    , m_writer(writer)
    , m_index(index)
    , m_clock(clock)
    , m_progress(progress)
    , m_source(std::move(source)) {}

SoundTrack::~SoundTrack() = default;

void SoundTrack::start() {
    m_source->start(*this);
}

void SoundTrack::stop() {
    m_source->stop();
}

void SoundTrack::sound(media::AudioBuffer buffer) {
    constexpr std::int32_t nanoseconds = 1'000'000'000;
    const base::HostTime time(
        base::HostDuration(buffer.presentationTime.rescaled(nanoseconds).value));
    const auto movieTime =
        m_clock.with([time](const RecordingClock& clock) { return clock.movieTime(time); });
    if (!movieTime)
        return;
    buffer.presentationTime = {.value = movieTime->count(), .timescale = nanoseconds};
    if (m_writer.appendAudio(m_index, std::move(buffer)))
        m_hasSound = true;
}

void SoundTrack::soundStopped(const std::string& error) {
    base::logWarning("{} has ended: {}", nameOf(m_kind), error);
    m_progress.lost(fmt::format("{}: {}", nameOf(m_kind), error));
}

} // namespace vantro::capture
