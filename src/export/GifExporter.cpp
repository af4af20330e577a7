#include "export/GifExporter.h"

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

ExportSummary GifExporter::run(render::MovieSession& session, const std::filesystem::path& output,
                               const ExportProgress& progress,
                               const std::stop_token& cancelled) try {
    const auto video = session.video(session.canvas(gifBaseSize(session.videoSize())), m_frameRate);
    const int width = video.renderWidth;
    const int height = video.renderHeight;
    Transfer transfer{.reader = {session.composition(), video, media::PixelFormat::bgra},
                      .writer = {output, width, height, video.frameDuration},
                      .duration = session.duration(),
                      .toleratesDamage = m_toleratesDamage,
                      .summary = {.width = width, .height = height}};
    const std::stop_callback cancelReader(cancelled, [&] { transfer.reader.cancel(); });
    runPumps({{.label = "com.vantro.export.video",
               .run = [&](ProgressMailbox& mailbox) { transfer.run(mailbox); },
               .stop = [&] { transfer.reader.cancel(); }}},
             progress);
    if (cancelled.stop_requested() || !transfer.writer.finish(whileFinishing(cancelled, progress)))
        return {.outcome = ExportOutcome::cancelled};
    return transfer.summary;
} catch (const media::MediaError& error) {
    throw model::VantroError(model::VantroError::Kind::exportFailed, error.what());
}

} // namespace vantro::exporting
