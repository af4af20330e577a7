#pragma once

#include "export/ExportResolution.h"
#include "export/ExportSummary.h"
#include "media/values/VideoEncoderChoice.h"
#include "media/values/VideoQuality.h"
#include "render/MovieSession.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stop_token>

namespace vantro::exporting {

/// Writes the film as an MPEG-4 file: H.264 High at 20 Mbit/s, or at most that where a small file
/// is wanted, constant frame rate, and where the recording has sound, all of it mixed as AAC at
/// 128 kbit/s.
///
/// Decoding, composing and encoding run at the same time on threads of their own, joined by bounded
/// queues. The file appears under `output` only when it is whole; a failed or cancelled export
/// leaves what was there. Throws VantroError. Blocks; the session's thread.
class VideoExporter {
  public:
    static constexpr std::int64_t averageBitRate = 20'000'000; ///< bit/s
    static constexpr std::int64_t soundBitRate = 128'000;      ///< bit/s

    /// Frames a second; the recording's own unless set.
    void setFrameRate(int framesPerSecond) { m_frameRate = framesPerSecond; }
    /// Whether a movie that breaks off is exported up to there; else it is an error.
    void setToleratesDamage(bool tolerates) { m_toleratesDamage = tolerates; }
    /// What encodes; one that cannot be had here is an error. One that fails on the way is not:
    /// libx264 goes on.
    void setEncoder(media::VideoEncoderChoice encoder) { m_encoder = encoder; }
    /// fast unless set.
    void setQuality(media::VideoQuality quality) { m_quality = quality; }

    ExportSummary run(render::MovieSession& session, ExportResolution resolution,
                      const std::filesystem::path& output, const ExportProgress& progress,
                      const std::stop_token& cancelled);

  private:
    std::optional<int> m_frameRate;
    bool m_toleratesDamage = false;
    media::VideoEncoderChoice m_encoder = media::VideoEncoderChoice::automatic;
    media::VideoQuality m_quality = media::VideoQuality::fast;
};

} // namespace vantro::exporting
