#include "export/GIFExporter.h"

#include "export/ExportPump.h"
#include "export/gif/GifWriter.h"
#include "media/VideoCompositionReader.h"
#include "media/values/MediaError.h"
#include "model/VantroError.h"

#include <algorithm>
#include <cmath>

namespace vantro::exporting {
namespace {

constexpr double largestWidth = 640; // pixels

/// The reader and the writer of one export.
struct Transfer {
    media::VideoCompositionReader reader;
    gif::GifWriter writer;
    media::MediaTime duration;
    bool toleratesDamage;
    ExportSummary summary;

    void run(ProgressMailbox& mailbox) {
        try {
            moveFrames(mailbox);
        } catch (const media::MediaError& error) {
            if (!toleratesDamage || summary.frameCount == 0)
                throw;
            summary.damage = error.what();
        }
    }

    void moveFrames(ProgressMailbox& mailbox) {
        while (const auto frame = reader.copyNextFrame()) {
            writer.append(*frame->pixels);
            ++summary.frameCount;
            summary.duration =
                std::min(frame->presentationTime + frame->duration, duration).seconds();
            mailbox.post(frame->presentationTime.seconds() / duration.seconds());
        }
    }
};

} // namespace

model::Size gifBaseSize(model::Size recordingSize) {
    const double scale = std::min(largestWidth / recordingSize.width, 1.0);
    return {2 * std::floor(recordingSize.width * scale * 0.5),
            2 * std::floor(recordingSize.height * scale * 0.5)};
}

GIFExporter::GIFExporter(std::unique_ptr<render::Renderer> renderer)
    : m_renderer(std::move(renderer)) {}

GIFExporter::~GIFExporter() = default;

ExportSummary GIFExporter::run(const model::Recording& recording, const model::Edit& edit,
                               const std::filesystem::path& output, const ExportProgress& progress,
                               const std::stop_token& cancelled) try {
    const auto opened = openRecording(recording, edit);
    const auto size = renderSize(edit, gifBaseSize(opened.videoSize()));
    const auto movie =
        composeMovie(recording, edit, opened, size, m_frameRate, std::move(m_renderer));
    const int width = movie.video.renderWidth;
    const int height = movie.video.renderHeight;
    Transfer transfer{.reader = {movie.composition, movie.video, media::PixelFormat::bgra},
                      .writer = {output, width, height, movie.video.frameDuration},
                      .duration = movie.composition.duration(),
                      .toleratesDamage = m_toleratesDamage,
                      .summary = {.width = width, .height = height}};
    const std::stop_callback cancelReader(cancelled, [&] { transfer.reader.cancel(); });
    runPumps(
        {{"com.vantro.export.video", [&](ProgressMailbox& mailbox) { transfer.run(mailbox); }}},
        progress);
    if (cancelled.stop_requested()) {
        transfer.writer.cancel();
        return {.outcome = ExportOutcome::cancelled};
    }
    transfer.writer.finish();
    return transfer.summary;
} catch (const media::MediaError& error) {
    throw model::VantroError(model::VantroError::Kind::exportFailed, error.what());
}

} // namespace vantro::exporting
