#include "capture/session/RecordingMovie.h"

#include "base/Log.h"
#include "media/values/MediaError.h"
#include "model/VantroError.h"

namespace vantro::capture {
namespace {

// Far above what a screen needs at 60 frames a second: the editor works on this movie, so what is
// lost here shows in every export.
constexpr std::int64_t videoBitRate = 50'000'000;
// An exact seek decodes half of this on average.
constexpr double keyframeInterval = 0.5; // seconds

// What the log tells of a writer's end.
enum class WriterStatus { completed = 2, failed = 3 };

[[noreturn]] void fail(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::assetWriterFailed, message);
}

} // namespace

std::unique_ptr<media::AssetWriter>
openRecordingMovie(const std::filesystem::path& movie, const RecordingTarget& target, int frameRate,
                   const std::vector<media::AudioSettings>& audio) {
    const media::VideoSettings settings{.width = target.width,
                                        .height = target.height,
                                        .averageBitRate = videoBitRate,
                                        .expectedFrameRate = static_cast<double>(frameRate),
                                        .keyframeInterval = keyframeInterval,
                                        .expectsRealTime = true};
    std::unique_ptr<media::AssetWriter> writer;
    try {
        writer = std::make_unique<media::AssetWriter>(movie, media::FileType::quickTimeMovie,
                                                      settings, audio);
    } catch (const media::MediaError& error) {
        fail(fmt::format("Failed to create writer: {}", error.what()));
    }
    try {
        writer->startWriting();
    } catch (const media::MediaError& error) {
        fail(error.what());
    }
    return writer;
}

media::MediaTime movieLength(const SharedRecordingClock& clock, base::HostTime stopTime) {
    const auto length =
        clock.with([stopTime](const RecordingClock& at) { return at.length(stopTime); });
    constexpr std::int64_t second = 1'000'000'000;
    constexpr auto scale = media::MediaTime::boundaryTimescale;
    return {.value = (length.count() * scale + second - 1) / second, .timescale = scale};
}

void finishRecordingMovie(media::AssetWriter& writer, media::MediaTime length) {
    try {
        writer.finish(length);
    } catch (const media::MediaError& error) {
        base::logInfo("Asset writer finished, status: {}", static_cast<int>(WriterStatus::failed));
        base::logError("Asset writer error: {}", error.what());
        fail(error.what());
    }
    base::logInfo("Asset writer finished, status: {}", static_cast<int>(WriterStatus::completed));
}

} // namespace vantro::capture
