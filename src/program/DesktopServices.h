#pragma once

#include "app/flows/ExportRunner.h"
#include "app/flows/RecordingPlatform.h"
#include "capture/PlatformAbilities.h"
#include "capture/SoundDevices.h"
#include "editor/EditorPreview.h"
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
    /// What sound can be recorded, as far as that is known; before, all of it.
    void setSound(capture::SoundAbilities sound) { m_sound = std::move(sound); }
    /// Likewise of the cameras.
    void setCamera(capture::Ability camera) { m_camera = std::move(camera); }
    /// Whether the desktop lets us record; a lost connection is tried again. Not asked anew while
    /// a recording runs.
    bool preflight();

  private:
    /// Null where the desktop cannot be reached.
    capture::CapturePlatform* connected();

    capture::SoundAbilities m_sound;
    capture::Ability m_camera;
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

/// Opens a recording to be played as a whole. Throws VantroError.
std::unique_ptr<render::MovieSession> openMovie(const model::Recording& recording,
                                                const model::Edit& edit,
                                                std::unique_ptr<render::Renderer> renderer);
/// The same, drawn by the best renderer that works here.
std::unique_ptr<render::MovieSession> openMovieForEditor(const model::Recording& recording,
                                                         const model::Edit& edit);

/// The desktop's sound server plays what is heard.
std::unique_ptr<media::player::PlayerSound> makeSound(const media::Composition& composition);

} // namespace vantro::program
