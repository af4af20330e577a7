#pragma once

#include "app/state/AreaOverlay.h"

namespace vantro {

class RecordingPlatform;

/// Shows selection overlays on the main screen. Main thread.
class DesktopOverlays : public AreaOverlays {
  public:
    explicit DesktopOverlays(RecordingPlatform& platform) : m_platform(platform) {}

    std::shared_ptr<AreaOverlay> show(AreaOverlayCallbacks callbacks) override;

  private:
    RecordingPlatform& m_platform;
};

} // namespace vantro
