#include "capture/RecordingSession.h"

#include "base/Fatal.h"
#include "base/Log.h"
#include "media/values/MediaError.h"
#include "model/VantroError.h"

#include <system_error>
#include <utility>

namespace vantro::capture {
namespace {

// Far above what a screen needs at 60 frames a second: the editor works on this movie, so what is
// lost here shows in every export.
constexpr std::int64_t videoBitRate = 50'000'000;
// An exact seek decodes half of this on average.
constexpr double keyframeInterval = 0.5; // seconds

// What the log tells of a writer's end.
enum class WriterStatus { completed = 2, failed = 3 };

[[noreturn]] void failStart(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::captureStartFailed, message);
}

[[noreturn]] void failWriter(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::assetWriterFailed, message);
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
    m_markable.with([this](CursorTracker*& tracker) { tracker = m_tracker.get(); });
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
    openWriter(m_extras.openSounds());
    auto pointer = m_platform->makePointerSource(m_target);
    if (!pointer)
        failStart(pointer.error());
    m_pointer = std::move(*pointer);
    noteWhatIsMissing();
    openJournal();
    m_tracker = std::make_unique<CursorTracker>(m_clock, m_journal.get());
    m_tracker->setOnUnknown(
        [this](const char* what, const std::string& why) { m_progress.lost(what, why); });
    const double pixels = 2 * m_target.display.backingScaleFactor; // of half a point
    m_tracker->setPlaceOfUnknown({m_target.width / pixels, m_target.height / pixels});
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

void RecordingSession::openWriter(const std::vector<media::AudioSettings>& audio) {
    const media::VideoSettings settings{.width = m_target.width,
                                        .height = m_target.height,
                                        .averageBitRate = videoBitRate,
                                        .expectedFrameRate =
                                            static_cast<double>(m_request.frameRate),
                                        .keyframeInterval = keyframeInterval,
                                        .expectsRealTime = true};
    try {
        m_writer = std::make_unique<media::AssetWriter>(m_movie, media::FileType::quickTimeMovie,
                                                        settings, audio);
    } catch (const media::MediaError& error) {
        failWriter(fmt::format("Failed to create writer: {}", error.what()));
    }
    try {
        m_writer->startWriting();
    } catch (const media::MediaError& error) {
        failWriter(error.what());
    }
}

void RecordingSession::openJournal() {
    try {
        m_journal = std::make_unique<CursorJournal>(m_movie, describeRecording());
    } catch (const std::filesystem::filesystem_error& error) {
        failWriter(error.what());
    }
}

/// The screen comes last: its first frame is time zero, when all others already watch.
void RecordingSession::startSources() {
    try {
        m_pointer->start(*m_tracker);
        m_tracker->start();
        m_extras.start();
        m_screen->start();
    } catch (const std::runtime_error& error) {
        failStart(error.what());
    }
}

RecordingStatistics RecordingSession::statistics() {
    auto now = m_progress.statistics();
    m_markable.with([&](CursorTracker* tracker) {
        if (tracker != nullptr)
            now.pointerMoves = tracker->moves();
    });
    return now;
}

void RecordingSession::mark() {
    // Under the lock: the tracker must not go meanwhile, and notes a press in no time.
    m_markable.with([](CursorTracker* tracker) {
        if (tracker != nullptr)
            tracker->pressed({.time = base::hostNow(), .button = MouseButton::left, .place = {}});
    });
}

void RecordingSession::pause() {
    m_clock.with([](RecordingClock& clock) { clock.pause(base::hostNow()); });
}

void RecordingSession::resume() {
    m_clock.with([](RecordingClock& clock) { clock.resume(base::hostNow()); });
}

void RecordingSession::abandon() {
    m_progress.setRunning(false);
    m_markable.with([](CursorTracker*& tracker) { tracker = nullptr; });
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
    m_markable.with([](CursorTracker*& tracker) { tracker = nullptr; });
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
    try {
        finishWriter(stopTime);
    } catch (...) {
        // What there is of the recording may be recovered with it.
        m_extras.finish(movieLength(stopTime));
        throw;
    }
    m_extras.finish(movieLength(stopTime));
    return makeMetadata(stopTime);
}

void RecordingSession::stopSources(base::HostTime at) {
    m_pointer->stop();
    m_tracker->stop(at);
    m_extras.stop();
    m_screen->stop();
}

/// Rounded up to what every movie's time scale can hold, so that nothing is longer.
media::MediaTime RecordingSession::movieLength(base::HostTime stopTime) const {
    const auto length =
        m_clock.with([stopTime](const RecordingClock& clock) { return clock.length(stopTime); });
    constexpr std::int64_t second = 1'000'000'000;
    constexpr auto scale = media::MediaTime::boundaryTimescale;
    return {.value = (length.count() * scale + second - 1) / second, .timescale = scale};
}

void RecordingSession::finishWriter(base::HostTime stopTime) {
    try {
        m_writer->finish(movieLength(stopTime));
    } catch (const media::MediaError& error) {
        base::logInfo("Asset writer finished, status: {}", static_cast<int>(WriterStatus::failed));
        base::logError("Asset writer error: {}", error.what());
        failWriter(error.what());
    }
    base::logInfo("Asset writer finished, status: {}", static_cast<int>(WriterStatus::completed));
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

model::RecordingMetadata RecordingSession::makeMetadata(base::HostTime stopTime) const {
    auto metadata = describeRecording();
    metadata.cursorPositions = m_tracker->positions();
    metadata.clickEvents = m_tracker->clicks();
    metadata.endTime = movieLength(stopTime).seconds();
    m_extras.describe(metadata);
    return metadata;
}

} // namespace vantro::capture
