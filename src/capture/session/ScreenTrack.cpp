#include "capture/session/ScreenTrack.h"

#include "base/Log.h"

namespace vantro::capture {

ScreenTrack::ScreenTrack(std::unique_ptr<ScreenStream> stream, media::AssetWriter& writer,
                         SharedRecordingClock& clock, RecordingProgress& progress,
                         std::function<void(base::HostTime)> onZero)
    : m_writer(writer)
    , m_clock(clock)
    , m_progress(progress)
    , m_onZero(std::move(onZero))
    , m_stream(std::move(stream)) {}

ScreenTrack::~ScreenTrack() = default;

/// Sound may be appended as soon as the clock runs, so the writer comes first.
void ScreenTrack::start() {
    m_writer.startSession({});
    m_stream->startCapture(*this);
}

void ScreenTrack::stop() {
    m_stream->stopCapture();
}

SampleDisposition ScreenTrack::screenSample(const ScreenSample& sample) try {
    if (sample.status != FrameStatus::complete || !sample.pixels ||
        m_clock.with([](const RecordingClock& clock) { return clock.isStopped(); }))
        return SampleDisposition::taken;
    if (!m_hasBegun && !begin(sample.presentationTime))
        return SampleDisposition::refused;
    const auto time = m_clock.with(
        [&](const RecordingClock& clock) { return clock.movieTime(sample.presentationTime); });
    return time ? append(sample, *time) : SampleDisposition::refused;
} catch (const std::exception& error) {
    base::logError("The movie cannot be written: {}", error.what());
    m_progress.ended(RecordingCondition::writerFailed);
    return SampleDisposition::taken;
}

bool ScreenTrack::wantsPicture() {
    return m_clock.with([](const RecordingClock& clock) { return !clock.isPaused(); });
}

/// False for a picture that a pause before the first one leaves out.
bool ScreenTrack::begin(base::HostTime zero) {
    m_hasBegun = m_clock.with(
        [zero](RecordingClock& clock) { return !clock.isWaiting() || clock.start(zero); });
    if (!m_hasBegun)
        return false;
    m_onZero(zero);
    base::logInfo("First frame at {:f}", base::inSeconds(zero.time_since_epoch()));
    return true;
}

SampleDisposition ScreenTrack::append(const ScreenSample& sample, base::HostDuration time) {
    const media::VideoFrame frame{
        .pixels = sample.pixels,
        .presentationTime = {.value = time.count(), .timescale = 1'000'000'000},
        .duration = {}};
    if (m_writer.isReadyForMoreMediaData() && m_writer.append(frame)) {
        m_progress.frameCaptured();
        return SampleDisposition::taken;
    }
    m_progress.frameDropped();
    if (!m_writer.hasFailed())
        return SampleDisposition::refused;
    // A failed writer never takes anything again: offering the picture once more would be in vain.
    m_progress.ended(RecordingCondition::writerFailed);
    return SampleDisposition::taken;
}

void ScreenTrack::streamStopped(const std::string& error) {
    if (error.empty()) {
        base::logInfo("The desktop has ended the sharing");
        return m_progress.ended(RecordingCondition::userStopped);
    }
    base::logError("Stream stopped with error: {}", error);
    m_progress.ended(RecordingCondition::streamStopped, error);
}

} // namespace vantro::capture
