#pragma once

#include "app/state/ExportRunner.h"
#include "app/state/Recorder.h"
#include "editor/StillPreview.h"
#include "editor/picker/WindowPickerModel.h"

#include <memory>

namespace vantro {

class CapturePlatform;

/// Recording on the desktop that this program runs on. Main thread; each recorder connects to the
/// desktop by itself.
class DesktopRecording : public RecordingPlatform {
  public:
    DesktopRecording();
    ~DesktopRecording() override;

    std::vector<ShareableDisplay> displays() override;
    std::shared_ptr<Recorder> makeRecorder(RecorderConfiguration configuration) override;
    /// Whether the desktop lets us record; a lost connection is tried again.
    bool preflight();

  private:
    std::unique_ptr<CapturePlatform> m_platform;
};

/// Lists what can be recorded, over a connection of its own.
std::expected<ShareableContent, std::string> listShareableContent();

/// Exports with the best renderer that works here.
void runExport(const ExportJob& job, const std::function<void(double fraction)>& progress,
               const std::stop_token& cancelled);

/// Draws previews as an export at the original resolution would.
PreviewSource exportPreview();

} // namespace vantro
