#pragma once

#include "export/ComposedMovie.h"
#include "export/ExportSummary.h"
#include "media/values/VideoEncoderChoice.h"

#include <filesystem>
#include <memory>
#include <stop_token>

namespace vantro::exporting {

/// Writes the edited recording as an MPEG-4 file: H.264 High at 20 Mbit/s, constant frame rate, and
/// where the recording has sound, all of it mixed as AAC at 128 kbit/s.
///
/// Decoding, composing and encoding run at the same time on threads of their own, joined by bounded
/// queues. The file appears under `output` only when it is whole; a failed or cancelled export
/// leaves what was there. Throws VantroError. Blocks; any one thread.
class VideoExporter {
  public:
    explicit VideoExporter(std::unique_ptr<render::Renderer> renderer);
    ~VideoExporter();

    /// Whether a movie that breaks off is exported up to there; else it is an error.
    void setToleratesDamage(bool tolerates) { m_toleratesDamage = tolerates; }
    /// What encodes; one that cannot be had here is an error. One that fails on the way is not:
    /// libx264 goes on.
    void setEncoder(media::VideoEncoderChoice encoder) { m_encoder = encoder; }

    ExportSummary run(const model::Recording& recording, const model::Edit& edit,
                      ExportResolution resolution, const std::filesystem::path& output,
                      const ExportProgress& progress, const std::stop_token& cancelled);

  private:
    std::unique_ptr<render::Renderer> m_renderer;
    bool m_toleratesDamage = false;
    media::VideoEncoderChoice m_encoder = media::VideoEncoderChoice::automatic;
};

} // namespace vantro::exporting
