#include "export/VideoExporter.h"

#include "export/ExportPump.h"
#include "media/AssetWriter.h"
#include "media/AudioMixReader.h"
#include "media/VideoCompositionReader.h"
#include "media/values/MediaError.h"
#include "model/VantroError.h"

#include <algorithm>
#include <optional>

namespace vantro::exporting {
namespace {

constexpr media::AudioSettings audioSettings{.averageBitRate = VideoExporter::soundBitRate};

/// 4:2:0 encoders take even sizes only: an odd canvas loses its last column or row. A view, no
/// copy.
std::shared_ptr<const media::PixelBuffer>
croppedToEven(std::shared_ptr<const media::PixelBuffer> pixels) {
    const int width = pixels->width() & ~1;
    const int height = pixels->height() & ~1;
    if (width == pixels->width() && height == pixels->height())
        return pixels;
    const std::uint8_t* planes[media::PixelBuffer::maxPlanes]{};
    int strides[media::PixelBuffer::maxPlanes]{};
    for (int plane = 0; plane < pixels->planeCount(); ++plane) {
        planes[plane] = pixels->plane(plane);
        strides[plane] = pixels->stride(plane);
    }
    return media::PixelBuffer::wrap(pixels->format(), width, height, planes, strides,
                                    pixels->color(), pixels);
}

media::VideoSettings encoderSettings(const media::VideoComposition& video,
                                     media::VideoEncoderChoice encoder,
                                     media::VideoQuality quality) {
    return {.width = video.renderWidth & ~1,
            .height = video.renderHeight & ~1,
            .averageBitRate = VideoExporter::averageBitRate,
            .expectedFrameRate = 1 / video.frameDuration.seconds(),
            .encoder = encoder,
            .quality = quality};
}

/// The readers and the writer of one export, and the pumps between them.
class Transfer {
  public:
    Transfer(const render::MovieSession& session, const media::VideoComposition& video,
             const std::filesystem::path& output, const media::VideoSettings& settings,
             bool toleratesDamage)
        : m_toleratesDamage(toleratesDamage)
        , m_duration(session.duration())
        , m_video(session.composition(), video, media::PixelFormat::i420)
        , m_audio(audioReader(session))
        , m_writer(output, media::FileType::mpeg4, settings,
                   m_audio ? std::vector{audioSettings} : std::vector<media::AudioSettings>{}) {
        m_writer.startWriting();
        m_writer.startSession(media::MediaTime{});
    }

    media::AssetWriter& writer() { return m_writer; }
    /// How much of the composition was written; all of it unless damage was tolerated.
    media::MediaTime writtenDuration() const { return m_end; }
    const std::string& damage() const { return m_damage; }

    void stop() {
        m_video.cancel();
        if (m_audio)
            m_audio->cancel();
    }

    void run(const ExportProgress& progress) {
        std::vector<Pump> pumps;
        pumps.push_back({"com.vantro.export.video",
                         [this](ProgressMailbox& mailbox) { pumpVideo(mailbox); },
                         [this] { m_video.cancel(); }});
        if (m_audio)
            pumps.push_back({"com.vantro.export.audio",
                             [this](ProgressMailbox&) { pumpAudio(*m_audio); },
                             [this] { stop(); }});
        runPumps(std::move(pumps), progress);
    }

  private:
    static std::optional<media::AudioMixReader> audioReader(const render::MovieSession& session) {
        const auto mix = session.soundMix();
        if (mix.empty())
            return {};
        return std::optional<media::AudioMixReader>(std::in_place, session.composition(), mix);
    }

    /// However the pictures end, the sound must not wait for more of them.
    void pumpVideo(ProgressMailbox& mailbox) {
        try {
            moveFrames(mailbox);
        } catch (const media::MediaError& error) {
            m_writer.markVideoAsFinished(m_end);
            if (!m_toleratesDamage || m_end == media::MediaTime{})
                throw;
            m_damage = error.what();
            return;
        } catch (...) {
            m_writer.markVideoAsFinished(m_end);
            throw;
        }
        m_writer.markVideoAsFinished(m_end);
    }

    void moveFrames(ProgressMailbox& mailbox) {
        std::shared_ptr<const media::PixelBuffer> last;
        std::shared_ptr<const media::PixelBuffer> lastCropped;
        while (auto frame = m_video.copyNextFrame()) {
            if (frame->pixels != last) { // an unchanged picture stays the same to the encoder
                last = frame->pixels;
                lastCropped = croppedToEven(last);
            }
            frame->pixels = lastCropped;
            if (!m_writer.append(*frame))
                return; // finishing the writer tells why
            m_end = std::min(frame->presentationTime + frame->duration, m_duration);
            mailbox.post(frame->presentationTime.seconds() / m_duration.seconds());
        }
    }

    void pumpAudio(media::AudioMixReader& audio) {
        try {
            while (auto buffer = audio.copyNextBuffer()) {
                if (!m_writer.appendAudio(0, std::move(*buffer)))
                    return;
            }
        } catch (const media::MediaError&) {
            if (!m_toleratesDamage) // the rest stays silent
                throw;
        }
    }

    bool m_toleratesDamage;
    media::MediaTime m_duration;
    media::MediaTime m_end; ///< the video pump's own while it runs
    std::string m_damage;   ///< the video pump's own while it runs
    media::VideoCompositionReader m_video;
    std::optional<media::AudioMixReader> m_audio;
    media::AssetWriter m_writer;
};

} // namespace

ExportSummary VideoExporter::run(render::MovieSession& session, ExportResolution resolution,
                                 const std::filesystem::path& output,
                                 const ExportProgress& progress,
                                 const std::stop_token& cancelled) try {
    const auto recorded = static_cast<int>(session.recording().metadata().frameRate);
    const auto video = session.video(session.canvas(baseSize(resolution, session.videoSize())),
                                     m_frameRate.value_or(recorded));
    const auto settings = encoderSettings(video, m_encoder, m_quality);
    Transfer transfer(session, video, output, settings, m_toleratesDamage);
    const std::stop_callback stopReading(cancelled, [&transfer] { transfer.stop(); });
    transfer.run(progress);
    media::AssetWriter& writer = transfer.writer();
    if (cancelled.stop_requested() || !writer.finish({}, whileFinishing(cancelled, progress)))
        return {.outcome = ExportOutcome::cancelled};
    return {.outcome = ExportOutcome::finished,
            .width = settings.width,
            .height = settings.height,
            .frameCount = writer.frameCount(),
            .duration = transfer.writtenDuration().seconds(),
            .encoder = writer.encoderName(),
            .damage = transfer.damage()};
} catch (const media::MediaError& error) {
    throw model::VantroError(model::VantroError::Kind::exportFailed, error.what());
} catch (const std::filesystem::filesystem_error& error) {
    throw model::VantroError(model::VantroError::Kind::exportFailed, error.what());
}

} // namespace vantro::exporting
