#include "export/VideoExporter.h"

#include "export/ExportPump.h"
#include "media/AssetWriter.h"
#include "media/MediaError.h"
#include "media/VideoCompositionReader.h"
#include "model/VantroError.h"

namespace vantro {
namespace {

constexpr std::int64_t averageBitRate = 20'000'000; // bit/s

/// 4:2:0 encoders take even sizes only: an odd canvas loses its last column or row. A view, no
/// copy.
std::shared_ptr<const PixelBuffer> croppedToEven(std::shared_ptr<const PixelBuffer> pixels) {
    const int width = pixels->width() & ~1;
    const int height = pixels->height() & ~1;
    if (width == pixels->width() && height == pixels->height())
        return pixels;
    const std::uint8_t* planes[PixelBuffer::maxPlanes]{};
    int strides[PixelBuffer::maxPlanes]{};
    for (int plane = 0; plane < pixels->planeCount(); ++plane) {
        planes[plane] = pixels->plane(plane);
        strides[plane] = pixels->stride(plane);
    }
    return PixelBuffer::wrap(pixels->format(), width, height, planes, strides, pixels->color(),
                             pixels);
}

VideoSettings encoderSettings(const VideoComposition& video) {
    return {.width = video.renderWidth & ~1,
            .height = video.renderHeight & ~1,
            .averageBitRate = averageBitRate,
            .expectedFrameRate = 1 / video.frameDuration.seconds()};
}

/// Moves every composed frame into the writer; runs on the video pump's queue.
void pumpVideo(VideoCompositionReader& reader, AssetWriter& writer, MediaTime duration,
               ProgressMailbox& mailbox) {
    std::shared_ptr<const PixelBuffer> last;
    std::shared_ptr<const PixelBuffer> lastCropped;
    while (auto frame = reader.copyNextFrame()) {
        if (frame->pixels != last) { // an unchanged picture stays the same to the encoder
            last = frame->pixels;
            lastCropped = croppedToEven(last);
        }
        frame->pixels = lastCropped;
        if (!writer.append(*frame))
            return; // finishing the writer tells why
        mailbox.post(frame->presentationTime.seconds() / duration.seconds());
    }
}

} // namespace

VideoExporter::VideoExporter(std::unique_ptr<Renderer> renderer)
    : m_renderer(std::move(renderer)) {}

VideoExporter::~VideoExporter() = default;

ExportSummary VideoExporter::run(const EditedRecording& recording, ExportResolution resolution,
                                 const std::filesystem::path& output,
                                 const ExportProgress& progress,
                                 const std::stop_token& cancelled) try {
    const auto opened = openRecording(recording);
    const auto size = renderSize(recording, baseSize(resolution, opened.videoSize()));
    auto movie =
        composeMovie(recording, opened, size, static_cast<int>(recording.metadata.frameRate),
                     std::move(m_renderer));
    const auto duration = movie.composition.duration();

    VideoCompositionReader reader(movie.composition, movie.video, PixelFormat::i420);
    AssetWriter writer(output, FileType::mpeg4, encoderSettings(movie.video));
    const std::stop_callback cancelReader(cancelled, [&reader] { reader.cancel(); });
    writer.startWriting();
    writer.startSession(MediaTime{});

    runPump(
        "com.vantro.export.video",
        [&](ProgressMailbox& mailbox) { pumpVideo(reader, writer, duration, mailbox); }, progress);
    if (cancelled.stop_requested()) {
        writer.cancel();
        return {.outcome = ExportOutcome::cancelled};
    }
    writer.finish(duration);
    return {.outcome = ExportOutcome::finished,
            .width = movie.video.renderWidth & ~1,
            .height = movie.video.renderHeight & ~1,
            .frameCount = writer.frameCount(),
            .duration = duration.seconds()};
} catch (const MediaError& error) {
    throw VantroError(VantroError::Kind::exportFailed, error.what());
} catch (const std::filesystem::filesystem_error& error) {
    throw VantroError(VantroError::Kind::exportFailed, error.what());
}

} // namespace vantro
