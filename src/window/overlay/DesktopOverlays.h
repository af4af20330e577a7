#pragma once

#include "app/flows/AreaOverlay.h"

namespace vantro::app::flows {
class RecordingPlatform;
} // namespace vantro::app::flows

namespace vantro::window::overlay {

/// Covers every display with a selection overlay; a drag belongs to one of them, and the first
/// answer ends them all. Main thread.
class DesktopOverlays : public app::flows::AreaOverlays {
  public:
    explicit DesktopOverlays(app::flows::RecordingPlatform& platform) : m_platform(platform) {}

    std::shared_ptr<app::flows::AreaOverlay>
    show(app::flows::AreaOverlayCallbacks callbacks) override;

  private:
    app::flows::RecordingPlatform& m_platform;
};

} // namespace vantro::window::overlay
