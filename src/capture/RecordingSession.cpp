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
constexpr double expectedFrameRate = 60;
constexpr std::int64_t metadataFrameRate = 60;

// What the log tells of a writer's end.
enum class WriterStatus { none = -1, completed = 2, failed = 3 };

media::MediaTime toMediaTime(base::HostTime time) {
    return {.value = time.time_since_epoch().count(), .timescale = 1'000'000'000};
}

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

void logLeftOutSources(const SourceSwitches& sources) {
    if (sources.systemSound)
        base::logWarning("System audio is not available, skipping system audio recording");
    if (sources.microphone)
        base::logWarning("Microphone is not available, skipping mic recording");
    if (sources.camera)
        base::logWarning("No camera available, skipping webcam recording");
}

} // namespace

RecordingSession::RecordingSession(RecordingRequest request, Connect connect)
    : m_request(std::move(request)), m_connect(std::move(connect)) {}

RecordingSession::~RecordingSession() {
    abandon();
}

bool RecordingSession::choose(std::stop_token cancelled) {
    if (!m_platform)
        m_platform = m_connect();
    auto target = awaitTarget(*m_platform, m_request, std::move(cancelled));
    if (target)
        m_target = std::move(*target);
    return target.has_value();
}

void RecordingSession::start(const std::filesystem::path& movie) {
    base::require(m_platform != nullptr, "a recording starts before its target is chosen");
    // Where content can be listed, what stands where counts as it is now.
    if (m_platform->abilities().listsContent.isAvailable())
        choose({});
    m_movie = movie;
    logTarget(m_request, m_target);
    logLeftOutSources(m_request.sources);
    try {
        prepareStream();
        prepareWriter();
        auto pointer = m_platform->makePointerSource();
        if (!pointer)
            failStart(pointer.error());
        startTracker(std::move(*pointer));
        m_stateQueue.sync([this] { _isWriting = true; });
        startCapture();
    } catch (...) {
        abandon();
        throw;
    }
    m_isRunning = true;
    base::logInfo("Capture started");
}

void RecordingSession::prepareStream() {
    auto stream = m_platform->makeScreenStream(m_target);
    if (!stream)
        failStart(stream.error());
    m_stream = std::move(*stream);
}

void RecordingSession::prepareWriter() {
    const media::VideoSettings settings{.width = m_target.width,
                                        .height = m_target.height,
                                        .averageBitRate = videoBitRate,
                                        .expectedFrameRate = expectedFrameRate,
                                        .expectsRealTime = true};
    try {
        m_assetWriter = std::make_unique<media::AssetWriter>(
            m_movie, media::FileType::quickTimeMovie, settings);
    } catch (const media::MediaError& error) {
        failWriter(fmt::format("Failed to create writer: {}", error.what()));
    }
    try {
        m_assetWriter->startWriting();
    } catch (const media::MediaError& error) {
        failWriter(error.what());
    }
}

void RecordingSession::startTracker(std::shared_ptr<PointerSource> pointer) {
    auto journal = makeJournal(); // takes a moment: before time zero
    m_cursorTracker =
        std::make_unique<CursorTracker>(m_target.captureRect, m_target.display.frame.height,
                                        std::move(pointer), hostCaptureClock(), std::move(journal));
    m_cursorTracker->start();
}

CursorJournal RecordingSession::makeJournal() const {
    try {
        return CursorJournal(m_movie, describeRecording());
    } catch (const std::filesystem::filesystem_error& error) {
        failWriter(error.what());
    }
}

void RecordingSession::startCapture() {
    try {
        m_stream->startCapture(*this);
    } catch (const std::runtime_error& error) {
        failStart(error.what());
    }
}

void RecordingSession::abandon() {
    m_stateQueue.sync([this] { _isWriting = false; });
    m_stream.reset();
    if (std::exchange(m_cursorTracker, nullptr)) {
        std::error_code ignored;
        std::filesystem::remove(cursorJournalPath(m_movie), ignored);
    }
    m_assetWriter.reset();
}

SampleDisposition RecordingSession::screenSample(const ScreenSample& sample) {
    struct State {
        bool isWriting;
        bool hasFirstSample;
    };
    const auto state =
        m_stateQueue.sync([this] { return State{_isWriting, _firstSampleTime.has_value()}; });
    if (!state.isWriting || sample.status != FrameStatus::complete || !sample.pixels)
        return SampleDisposition::taken;
    const media::VideoFrame frame{.pixels = sample.pixels,
                                  .presentationTime = toMediaTime(sample.presentationTime),
                                  .duration = {}};
    return append(frame, !state.hasFirstSample);
}

SampleDisposition RecordingSession::append(const media::VideoFrame& frame, bool isFirst) {
    if (isFirst) {
        m_assetWriter->startSession(frame.presentationTime);
        m_stateQueue.sync([&] { _firstSampleTime = frame.presentationTime; });
        base::logInfo("First frame at {:f}", frame.presentationTime.seconds());
    }
    const bool isAppended =
        m_assetWriter->isReadyForMoreMediaData() && m_assetWriter->append(frame);
    const bool hasFailed = !isAppended && m_assetWriter->hasFailed();
    m_stateQueue.sync([&] {
        ++(isAppended ? _frameCount : _droppedCount);
        if (hasFailed)
            _condition = RecordingCondition::writerFailed;
    });
    // A failed writer never takes anything again: offering the picture once more would be in vain.
    return isAppended || hasFailed ? SampleDisposition::taken : SampleDisposition::refused;
}

void RecordingSession::streamStopped(const std::string& error) {
    base::logError("Stream stopped with error: {}", error);
    m_stateQueue.sync([&] {
        if (_condition == RecordingCondition::recording)
            _condition = RecordingCondition::streamStopped;
        _streamError = error;
    });
}

model::RecordingMetadata RecordingSession::stop() {
    m_isRunning = false;
    base::HostTime stopTime;
    const auto frameCount = m_stateQueue.sync([&] {
        _isWriting = false;
        stopTime = base::hostNow();
        return _frameCount;
    });
    base::logInfo("Stopping capture, {} frames written", frameCount);
    // What it has written down stays when the recorder goes: the movie may fail yet.
    const auto tracker = std::move(m_cursorTracker);
    if (tracker)
        tracker->stop();
    if (m_stream)
        m_stream->stopCapture();
    m_stream.reset();
    const bool hasFrames = m_stateQueue.sync([this] { return _firstSampleTime.has_value(); });
    finishWriter(hasFrames, stopTime);
    if (!hasFrames) {
        std::error_code ignored;
        std::filesystem::remove(cursorJournalPath(m_movie), ignored);
        throw model::VantroError(model::VantroError::Kind::noRecordingData);
    }
    return makeMetadata(tracker.get());
}

void RecordingSession::finishWriter(bool hasFrames, base::HostTime stopTime) {
    const auto writer = std::move(m_assetWriter);
    if (!hasFrames) {
        base::logError("No frames were captured");
        if (writer)
            writer->cancel();
        return;
    }
    WriterStatus status = WriterStatus::none;
    std::string failure;
    try {
        if (writer) {
            writer->finish(toMediaTime(stopTime));
            status = WriterStatus::completed;
        }
    } catch (const media::MediaError& error) {
        status = WriterStatus::failed;
        failure = error.what();
    }
    base::logInfo("Asset writer finished, status: {}", static_cast<int>(status));
    if (status != WriterStatus::failed)
        return;
    base::logError("Asset writer error: {}", failure);
    failWriter(failure);
}

/// All that is known before the first sample.
model::RecordingMetadata RecordingSession::describeRecording() const {
    model::RecordingMetadata metadata;
    metadata.captureRect = m_target.captureRect;
    metadata.displayID = m_target.display.displayID;
    metadata.frameRate = metadataFrameRate;
    metadata.displayScaleFactor = m_target.display.backingScaleFactor;
    return metadata;
}

model::RecordingMetadata RecordingSession::makeMetadata(CursorTracker* tracker) const {
    auto metadata = describeRecording();
    if (tracker != nullptr) {
        metadata.cursorPositions = tracker->positions();
        metadata.clickEvents = tracker->clicks();
    }
    if (!metadata.cursorPositions.empty())
        metadata.endTime = metadata.cursorPositions.back().timestamp;
    return metadata;
}

RecordingStatistics RecordingSession::statistics() {
    return m_stateQueue.sync([this] {
        return RecordingStatistics{m_isRunning, _frameCount, _droppedCount, _condition,
                                   _streamError};
    });
}

} // namespace vantro::capture
