#pragma once

#include "export/ExportSummary.h"
#include "render/MovieSession.h"

#include <filesystem>
#include <stop_token>

namespace vantro::exporting {

/// Writes the film as an endlessly looping animated GIF, at most 640 pixels wide before
/// the canvas aspect is applied, 12 frames a second unless told otherwise.
///
/// The file appears under `output` only when it is whole. Throws VantroError. Blocks; the
/// session's thread.
class GifExporter {
  public:
    static constexpr int usualFrameRate = 12;
    /// Players slow down what is faster.
    static constexpr int highestFrameRate = 50;
    /// Frames a second, 1 to highestFrameRate.
    void setFrameRate(int framesPerSecond) { m_frameRate = framesPerSecond; }
    /// Whether a movie that breaks off is exported up to there; else it is an error.
    void setToleratesDamage(bool tolerates) { m_toleratesDamage = tolerates; }

    ExportSummary run(render::MovieSession& session, const std::filesystem::path& output,
                      const ExportProgress& progress, const std::stop_token& cancelled);

  private:
    int m_frameRate = usualFrameRate;
    bool m_toleratesDamage = false;
};

/// The recording's size scaled down to 640 pixels of width, never up, both sides even.
model::Size gifBaseSize(model::Size recordingSize);

} // namespace vantro::exporting
