#pragma once

#include "export/ComposedMovie.h"
#include "export/ExportSummary.h"

#include <filesystem>
#include <memory>
#include <stop_token>

namespace vantro {

/// Writes the edited recording as an endlessly looping animated GIF, at most 640 pixels wide before
/// the canvas aspect is applied, 12 frames a second.
///
/// The file appears under `output` only when it is whole. Throws VantroError. Blocks; any one
/// thread, once.
class GIFExporter {
  public:
    explicit GIFExporter(std::unique_ptr<Renderer> renderer);
    ~GIFExporter();

    ExportSummary run(const EditedRecording& recording, const std::filesystem::path& output,
                      const ExportProgress& progress, const std::stop_token& cancelled);

  private:
    std::unique_ptr<Renderer> m_renderer;
};

/// The recording's size scaled down to 640 pixels of width, never up, both sides even.
Size gifBaseSize(Size recordingSize);

} // namespace vantro
