#pragma once

#include "export/ComposedMovie.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <stop_token>

namespace vantro {

enum class ExportOutcome { finished, cancelled };

/// Called with the fraction done, 0 to 1, once for each whole percent, on the thread that called
/// the exporter.
using ExportProgress = std::function<void(double fraction)>;

/// What an export wrote, for people and logs.
struct ExportSummary {
    ExportOutcome outcome = ExportOutcome::finished;
    int width = 0;
    int height = 0;
    std::int64_t frameCount = 0;
    double duration = 0; ///< seconds
};

/// Writes the edited recording as an MPEG-4 file: H.264 High at 20 Mbit/s, constant frame rate.
///
/// Decoding, composing and encoding run at the same time on threads of their own, joined by bounded
/// queues. The file appears under `output` only when it is whole; a failed or cancelled export
/// leaves what was there. Throws VantroError. Blocks; any one thread.
class VideoExporter {
  public:
    explicit VideoExporter(std::unique_ptr<Renderer> renderer);
    ~VideoExporter();

    ExportSummary run(const EditedRecording& recording, ExportResolution resolution,
                      const std::filesystem::path& output, const ExportProgress& progress,
                      const std::stop_token& cancelled);

  private:
    std::unique_ptr<Renderer> m_renderer;
};

} // namespace vantro
