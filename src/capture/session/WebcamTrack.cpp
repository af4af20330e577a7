#include "capture/session/WebcamTrack.h"

#include "base/Log.h"
#include "media/MovieRecovery.h"
#include "media/values/MediaError.h"

#include <system_error>
#include <utility>

namespace vantro::capture {
namespace {

// What the log and the user call it.
constexpr auto sourceName = "Camera";

constexpr std::int64_t bitRate = 2'000'000;
// An exact seek decodes half of this on average.
constexpr double keyframeInterval = 1; // seconds
constexpr double expectedFrameRate = 30;

// What the log tells of a writer's end.
enum class WriterStatus { completed = 2, failed = 3 };

} // namespace

WebcamTrack::WebcamTrack(std::unique_ptr<CameraSource> source, std::filesystem::path movie,
                         SharedRecordingClock& clock, RecordingProgress& progress)
    : m_movie(std::move(movie))
    , m_clock(clock)
    , m_progress(progress)
    , m_source(std::move(source)) {}

WebcamTrack::~WebcamTrack() = default;

void WebcamTrack::start() {
    m_source->start(*this);
}

void WebcamTrack::stop() {
    m_source->stop();
    appendEarly(
        m_clock.with([](const RecordingClock& clock) { return clock.length(clock.stopTime()); }));
}

void WebcamTrack::picture(const CameraPicture& picture) {
    const auto [time, isOver] = m_clock.with([&](const RecordingClock& clock) {
        return std::pair(clock.movieTime(picture.time), clock.isStopped());
    });
    if (!time && !isOver)
        m_early = picture;
    if (!time)
        return;
    appendEarly(*time);
    append(picture, *time);
}

/// The screen began, or went on, between two pictures: the one before is what the camera saw then.
/// Nothing where the movie does not go on before `until`.
void WebcamTrack::appendEarly(base::HostDuration until) {
    const auto early = std::exchange(m_early, {});
    if (!early.pixels)
        return;
    const auto time =
        m_clock.with([&](const RecordingClock& clock) { return clock.length(early.time); });
    if (time < until)
        append(early, time);
}

void WebcamTrack::append(const CameraPicture& picture, base::HostDuration time) try {
    if (m_hasFailed)
        return;
    if (!m_writer)
        openWriter(picture.pixels->width(), picture.pixels->height());
    constexpr std::int32_t nanoseconds = 1'000'000'000;
    if (m_writer->append({.pixels = picture.pixels,
                          .presentationTime = {.value = time.count(), .timescale = nanoseconds},
                          .duration = {}}))
        m_progress.webcamFrameCaptured();
    else if (m_writer->hasFailed())
        giveUp("its movie cannot be written");
    else
        m_progress.webcamFrameDropped();
} catch (const media::MediaError& error) {
    giveUp(error.what());
}

void WebcamTrack::openWriter(int width, int height) {
    const media::VideoSettings settings{.width = width,
                                        .height = height,
                                        .averageBitRate = bitRate,
                                        .expectedFrameRate = expectedFrameRate,
                                        .keyframeInterval = keyframeInterval,
                                        .expectsRealTime = true};
    std::unique_ptr<media::AssetWriter> writer;
    try {
        writer = std::make_unique<media::AssetWriter>(m_movie, media::FileType::quickTimeMovie,
                                                      settings);
    } catch (const media::MediaError&) {
        base::logError("Failed to create webcam asset writer");
        throw;
    }
    try {
        writer->startWriting();
    } catch (const media::MediaError& error) {
        base::logError("Failed to start webcam writer: {}", error.what());
        throw;
    }
    writer->startSession({});
    m_writer = std::move(writer);
}

void WebcamTrack::giveUp(const std::string& reason) {
    m_hasFailed = true;
    m_progress.lost(sourceName, reason);
}

bool WebcamTrack::finish(media::MediaTime end) {
    if (!m_writer)
        return false;
    try {
        m_writer->finish(end);
        base::logInfo("Webcam writer finished, status: {}",
                      static_cast<int>(WriterStatus::completed));
        return true;
    } catch (const media::MediaError& error) {
        base::logInfo("Webcam writer finished, status: {}", static_cast<int>(WriterStatus::failed));
        giveUp(error.what());
        return keepsWhatThereIs(end);
    }
}

/// Of a movie that could not be written to its end.
bool WebcamTrack::keepsWhatThereIs(media::MediaTime end) const {
    try {
        media::recoverMovie(m_movie, end);
        return std::filesystem::exists(m_movie);
    } catch (const std::exception& error) {
        base::logError("Webcam writer error: {}", error.what());
        std::error_code ignored;
        std::filesystem::remove(media::movieJournalPath(m_movie), ignored);
        std::filesystem::remove(m_movie, ignored);
        return false;
    }
}

void WebcamTrack::cameraMissing(const std::string& reason) {
    base::logWarning("{}: {}; its last picture stays until it returns", sourceName, reason);
    m_progress.lost(sourceName, reason);
}

void WebcamTrack::cameraReturned() {
    base::logInfo("{} has returned", sourceName);
    if (!m_hasFailed)
        m_progress.returned(sourceName);
}

} // namespace vantro::capture
