#pragma once

#include "capture/ChosenContent.h"
#include "model/Geometry.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace vantro::app::flows {

/// The full-screen windows on which an area is dragged out, while they are shown. Destroying it
/// takes them off the screens. Main thread.
class AreaOverlay {
  public:
    virtual ~AreaOverlay() = default;
};

/// What an overlay tells; one of the two is called, once, when it has hidden itself. It is still at
/// work then, so it is destroyed later.
struct AreaOverlayCallbacks {
    std::function<void(std::uint32_t displayID, model::Rect rect)> onSelection; ///< global points
    std::function<void()> onCancel;
};

/// Shows area overlays. Main thread.
class AreaOverlays {
  public:
    virtual ~AreaOverlays() = default;

    /// Covers every display, above everything and with the keyboard; nothing when there is no
    /// display.
    virtual std::shared_ptr<AreaOverlay> show(AreaOverlayCallbacks callbacks) = 0;
    /// Whether what was chosen is a screen of which an area can be selected; otherwise it may be an
    /// area that the desktop's own dialog has cut out.
    virtual bool isScreen(const capture::ChosenContent& content) = 0;
    /// Shows a screen's picture where it lies, above everything and with the keyboard. The area is
    /// told in points from that screen's corner.
    virtual std::shared_ptr<AreaOverlay> showOn(const capture::ChosenContent& screen,
                                                AreaOverlayCallbacks callbacks) = 0;
};

} // namespace vantro::app::flows
