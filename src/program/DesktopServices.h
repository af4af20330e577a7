#pragma once

#include "app/flows/ExportRunner.h"
#include "app/flows/RecordingPlatform.h"
#include "editor/StillPreview.h"
#include "window/picker/WindowPickerModel.h"

#include <memory>

namespace vantro::capture {
class CapturePlatform;
} // namespace vantro::capture

namespace vantro::program {

/// Recording on the desktop that this program runs on. Main thread; each recorder connects to the
/// desktop by itself.
class DesktopRecording : public app::flows::RecordingPlatform {
  public:
    DesktopRecording();
    ~DesktopRecording() override;

    std::vector<capture::ShareableDisplay> displays() override;
    capture::PlatformAbilities abilities() override;
    std::shared_ptr<capture::Recorder> makeRecorder(capture::RecordingRequest request) override;
    /// Whether the desktop lets us record; a lost connection is tried again. Not asked anew while
    /// a recording runs.
    bool preflight();

  private:
    /// Null where the desktop cannot be reached.
    capture::CapturePlatform* connected();

    std::unique_ptr<capture::CapturePlatform> m_platform;
    std::string m_whyNot; ///< there is no platform
    std::weak_ptr<capture::Recorder> m_recorder;
};

/// Lists what can be recorded, over a connection of its own.
std::expected<capture::ShareableContent, std::string> listShareableContent();

/// Exports with the best renderer that works here.
void runExport(const app::flows::ExportJob& job,
               const std::function<void(double fraction)>& progress,
               const std::stop_token& cancelled);

/// Draws stills as an export at the original resolution would, from a movie that is opened once.
editor::StillSource openStills(const model::Recording& recording);

} // namespace vantro::program
