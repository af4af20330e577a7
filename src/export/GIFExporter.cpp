#include "export/GIFExporter.h"

#include "export/ExportPump.h"
#include "export/gif/GifWriter.h"
#include "media/MediaError.h"
#include "media/VideoCompositionReader.h"
#include "model/VantroError.h"

#include <algorithm>
#include <cmath>

namespace vantro {
namespace {

constexpr double largestWidth = 640; // pixels
constexpr int framesPerSecond = 12;

} // namespace

Size gifBaseSize(Size recordingSize) {
    const double scale = std::min(largestWidth / recordingSize.width, 1.0);
    return {2 * std::floor(recordingSize.width * scale * 0.5),
            2 * std::floor(recordingSize.height * scale * 0.5)};
}

GIFExporter::GIFExporter(std::unique_ptr<Renderer> renderer) : m_renderer(std::move(renderer)) {}

GIFExporter::~GIFExporter() = default;

ExportSummary GIFExporter::run(const EditedRecording& recording,
                               const std::filesystem::path& output, const ExportProgress& progress,
                               const std::stop_token& cancelled) try {
    const auto opened = openRecording(recording);
    const auto size = renderSize(recording, gifBaseSize(opened.videoSize()));
    const auto movie =
        composeMovie(recording, opened, size, framesPerSecond, std::move(m_renderer));
    const auto duration = movie.composition.duration();

    VideoCompositionReader reader(movie.composition, movie.video, PixelFormat::bgra);
    const std::stop_callback cancelReader(cancelled, [&reader] { reader.cancel(); });
    GifWriter writer(output, movie.video.renderWidth, movie.video.renderHeight,
                     movie.video.frameDuration);
    ExportSummary summary{.outcome = ExportOutcome::finished,
                          .width = movie.video.renderWidth,
                          .height = movie.video.renderHeight,
                          .frameCount = 0,
                          .duration = duration.seconds()};
    const auto pump = [&](ProgressMailbox& mailbox) {
        while (const auto frame = reader.copyNextFrame()) {
            writer.append(*frame->pixels);
            ++summary.frameCount;
            mailbox.post(frame->presentationTime.seconds() / duration.seconds());
        }
    };
    runPumps({{"com.vantro.export.video", pump}}, progress);
    if (cancelled.stop_requested()) {
        writer.cancel();
        return {.outcome = ExportOutcome::cancelled};
    }
    writer.finish();
    return summary;
} catch (const MediaError& error) {
    throw VantroError(VantroError::Kind::exportFailed, error.what());
}

} // namespace vantro
