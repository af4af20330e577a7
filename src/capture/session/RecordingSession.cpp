#include "capture/session/RecordingSession.h"

#include "base/Fatal.h"
#include "base/Log.h"
#include "capture/session/RecordingMovie.h"
#include "model/VantroError.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace vantro::capture {
namespace {

[[noreturn]] void failStart(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::captureStartFailed, message);
}

void logTarget(const RecordingRequest& request, const RecordingTarget& target) {
    base::logInfo("Capturing {}: {}x{}, systemAudio: {}, mic: {}", model::rawValue(target.mode),
                  target.width, target.height, request.sources.systemSound,
                  request.sources.microphone);
    const model::Rect& rect = target.captureRect;
    base::logInfo("Display: {:.0f}x{:.0f}, captureRect: ({}, {}, {}, {})",
                  target.display.frame.width, target.display.frame.height, rect.x, rect.y,
                  rect.width, rect.height);
}

/// On average: a screen that rests needs no pictures.
void logRate(double length, const RecordingStatistics& statistics) {
    const double seconds = std::max(length, 1e-3);
    base::logInfo("{} frames in {:.1f} s, {:.1f} a second, {} dropped", statistics.framesCaptured,
                  seconds, static_cast<double>(statistics.framesCaptured) / seconds,
                  statistics.framesDropped);
}

} // namespace

RecordingSession::RecordingSession(RecordingRequest request, Connect connect,
                                   std::unique_ptr<SoundDevices> sounds,
                                   std::unique_ptr<CameraDevices> cameras)
    : m_request(std::move(request))
    , m_connect(std::move(connect))
    , m_extras(m_request.sources, std::move(sounds), std::move(cameras), m_clock, m_progress) {}

RecordingSession::~RecordingSession() {
    abandon();
}

bool RecordingSession::choose(std::stop_token cancelled) {
    if (!m_platform)
        m_platform = m_connect();
    auto target = awaitTarget(*m_platform, m_request, cancelled);
    if (!target)
        return false;
    m_target = std::move(*target);
    m_target.minimumFrameInterval =
        base::HostDuration(std::chrono::seconds(1)) / m_request.frameRate;
    m_platform->settleClicks(cancelled);
    return !cancelled.stop_requested();
}

std::optional<ChosenContent> RecordingSession::chosen() {
    auto content = m_platform->chosen();
    if (content)
        content->pixelsPerPoint = m_target.display.backingScaleFactor;
    return content;
}

bool RecordingSession::start(const std::filesystem::path& movie) {
    base::require(m_platform != nullptr, "a recording starts before its target is chosen");
    // Where content can be listed, what stands where counts as it is now.
    if (m_platform->abilities().listsContent.isAvailable())
        choose({});
    m_movie = movie;
    logTarget(m_request, m_target);
    try {
        if (!openSources()) {
            abandon();
            return false;
        }
        startSources();
    } catch (...) {
        abandon();
        throw;
    }
    m_progress.setRunning(true);
    base::logInfo("Capture started");
    return true;
}

bool RecordingSession::openSources() {
    m_extras.openCamera(m_movie.parent_path() / webcamMovieName); // it needs longest to begin
    auto stream = m_platform->makeScreenStream(m_target);
    if (!stream && stream.error().empty())
        return false;
    if (!stream)
        failStart(stream.error());
    m_writer = openRecordingMovie(m_movie, m_target, m_request.frameRate, m_extras.openSounds());
    auto pointer = m_platform->makePointerSource(m_target);
    if (!pointer)
        failStart(pointer.error());
    m_pointer = std::move(*pointer);
    noteWhatIsMissing();
    openJournal();
    makeTracker();
    m_extras.connect(*m_writer, *m_journal);
    m_screen =
        std::make_unique<ScreenTrack>(std::move(*stream), *m_writer, m_clock, m_progress,
                                      [this](base::HostTime zero) { m_tracker->keepNewest(zero); });
    return true;
}

/// Nobody has to ask for pointer and clicks.
void RecordingSession::noteWhatIsMissing() {
    const auto able = m_platform->abilities();
    for (const Ability& each : {able.pointer, able.clicks})
        for (const auto& sentence : {each.whyNot, each.remark})
            if (!sentence.empty()) {
                base::logInfo("{}", sentence);
                m_progress.note(sentence);
            }
}

void RecordingSession::openJournal() {
    try {
        m_journal = std::make_unique<CursorJournal>(m_movie, describeRecording());
    } catch (const std::filesystem::filesystem_error& error) {
        throw model::VantroError(model::VantroError::Kind::assetWriterFailed, error.what());
    }
}

void RecordingSession::makeTracker() {
    m_tracker = std::make_unique<CursorTracker>(m_clock, m_journal.get());
    m_tracker->setOnUnknown(
        [this](const char* what, const std::string& why) { m_progress.lost(what, why); });
    const double pixels = 2 * m_target.display.backingScaleFactor; // of half a point
    m_tracker->setPlaceOfUnknown({m_target.width / pixels, m_target.height / pixels});
}

/// The screen comes last: its first frame is time zero, when all others already watch.
void RecordingSession::startSources() {
    try {
        m_pointer->start(*m_tracker);
        m_tracker->start();
        m_extras.start();
        m_tracking.with([this](CursorTracker*& tracker) { tracker = m_tracker.get(); });
        m_screen->start();
    } catch (const std::runtime_error& error) {
        failStart(error.what());
    }
}

RecordingStatistics RecordingSession::statistics() {
    auto statistics = m_progress.statistics();
    m_clock.with([&statistics](const RecordingClock& clock) {
        statistics.isPaused = clock.isPaused();
        statistics.pausedFor = clock.pausedFor(base::hostNow());
    });
    m_tracking.with([&statistics](const CursorTracker* tracker) {
        if (tracker != nullptr)
            statistics.pointerMoves = tracker->moves();
    });
    return statistics;
}

// Under the lock, for a moment: the tracker must not go meanwhile, and of `pause` and `resume` one
// is over before the other begins.

bool RecordingSession::mark() {
    return m_tracking.with([this](CursorTracker* tracker) {
        const auto now = base::hostNow();
        const bool isRecorded = m_clock.with(
            [now](const RecordingClock& clock) { return clock.movieTime(now).has_value(); });
        if (tracker != nullptr && isRecorded)
            tracker->pressed({.time = now, .button = MouseButton::left, .place = {}});
        return tracker != nullptr && isRecorded;
    });
}

void RecordingSession::pause() {
    m_tracking.with([this](CursorTracker* tracker) {
        const auto at = changeClock(&RecordingClock::pause);
        if (at && tracker != nullptr)
            tracker->paused(*at);
    });
}

void RecordingSession::resume() {
    m_tracking.with([this](CursorTracker* tracker) {
        const auto at = changeClock(&RecordingClock::resume);
        if (at && tracker != nullptr)
            tracker->resumed(*at);
    });
}

/// The instant; nothing where there was nothing to change.
std::optional<base::HostTime>
RecordingSession::changeClock(bool (RecordingClock::*change)(base::HostTime)) {
    return m_clock.with([change](RecordingClock& clock) -> std::optional<base::HostTime> {
        const auto now = base::hostNow();
        return (clock.*change)(now) ? std::optional(now) : std::nullopt;
    });
}

void RecordingSession::abandon() {
    m_progress.setRunning(false);
    m_tracking.with([](CursorTracker*& tracker) { tracker = nullptr; });
    m_clock.with([](RecordingClock& clock) { clock.stop(base::hostNow()); });
    m_screen.reset();
    m_extras.abandon();
    m_pointer.reset();
    m_tracker.reset();
    if (std::exchange(m_journal, nullptr)) {
        std::error_code ignored;
        std::filesystem::remove(cursorJournalPath(m_movie), ignored);
    }
    m_writer.reset();
}

model::RecordingMetadata RecordingSession::stop() {
    base::require(m_writer != nullptr, "a recording is stopped that does not run");
    m_progress.setRunning(false);
    m_tracking.with([](CursorTracker*& tracker) { tracker = nullptr; });
    const base::HostTime stopTime = m_clock.with([](RecordingClock& clock) {
        const base::HostTime now = base::hostNow();
        clock.stop(now);
        return now;
    });
    base::logInfo("Stopping capture, {} frames written", m_progress.framesCaptured());
    stopSources(stopTime);
    if (m_progress.framesCaptured() == 0) {
        base::logError("No frames were captured");
        m_writer->cancel();
        abandon();
        throw model::VantroError(model::VantroError::Kind::noRecordingData);
    }
    // What has been written down of the pointer stays beside the movie, which may fail yet.
    m_journal.reset();
    const auto length = movieLength(m_clock, stopTime);
    try {
        finishRecordingMovie(*m_writer, length);
    } catch (...) {
        // What there is of the recording may be recovered with it.
        m_extras.finish(length);
        throw;
    }
    m_extras.finish(length);
    logRate(length.seconds(), m_progress.statistics());
    return makeMetadata(length.seconds());
}

void RecordingSession::stopSources(base::HostTime at) {
    m_pointer->stop();
    m_tracker->stop(at);
    m_extras.stop();
    m_screen->stop();
}

/// All that is known before the first sample.
model::RecordingMetadata RecordingSession::describeRecording() const {
    model::RecordingMetadata metadata;
    metadata.captureRect = m_target.captureRect;
    metadata.displayID = m_target.display.displayID;
    metadata.frameRate = m_request.frameRate;
    metadata.displayScaleFactor = m_target.display.backingScaleFactor;
    return metadata;
}

model::RecordingMetadata RecordingSession::makeMetadata(double endTime) const {
    auto metadata = describeRecording();
    metadata.cursorPositions = m_tracker->positions();
    metadata.clickEvents = m_tracker->clicks();
    metadata.endTime = endTime;
    m_extras.describe(metadata);
    return metadata;
}

} // namespace vantro::capture
