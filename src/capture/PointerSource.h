#pragma once

#include "model/Geometry.h"

#include <functional>
#include <memory>

namespace vantro::capture {

enum class MouseButton { left, right };

/// Watches presses of one button for as long as it lives. Destruction waits until a handler that
/// runs has returned, so it must not happen inside of the handler.
class ClickMonitor {
  public:
    virtual ~ClickMonitor() = default;
};

/// Where the pointer is and when its buttons are pressed, anywhere on the desktop.
class PointerSource {
  public:
    virtual ~PointerSource() = default;

    /// Global points with the origin at the bottom left of the main screen, y upward. Once the
    /// connection to the desktop is lost, the last location known. One thread at a time.
    virtual model::Point location() = 0;

    /// Calls `handler` on a thread of the monitor's own soon after each press of `button`, from
    /// before this returns. Null when presses cannot be watched. Any thread.
    virtual std::unique_ptr<ClickMonitor> monitorPresses(MouseButton button,
                                                         std::function<void()> handler) = 0;
};

} // namespace vantro::capture
