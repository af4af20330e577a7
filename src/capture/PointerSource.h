#pragma once

#include "base/HostClock.h"
#include "model/Geometry.h"

#include <optional>
#include <string>

namespace vantro::capture {

enum class MouseButton { left, right };

/// Where the pointer was. Places are points from the top-left corner of what is recorded, as it
/// stood at that time, y downward; they may lie outside of it.
struct PointerSample {
    base::HostTime time;
    model::Point place;
};

/// A button that was pressed anywhere on the desktop but in our own windows.
struct PointerPress {
    base::HostTime time;
    MouseButton button = MouseButton::left;
    std::optional<model::Point> place; ///< absent where only the press is known
};

/// Receives what a pointer source tells. Each call returns soon. Places come on one thread, presses
/// perhaps on another.
class PointerOutput {
  public:
    virtual ~PointerOutput() = default;

    virtual void pointerAt(const PointerSample& sample) = 0;
    virtual void pressed(const PointerPress& press) = 0;
    /// The source does not know where the pointer is, for the reason that is given. Places may yet
    /// follow.
    virtual void pointerUnknown(const std::string& /*why*/) {}
    /// Presses are not told any more, for the reason that is given; places are.
    virtual void pressesUnknown(const std::string& /*why*/) {}
    /// The source has ended by itself; nothing follows.
    virtual void pointerStopped(const std::string& error) = 0;
};

/// Tells where the pointer is, as often as it knows, and when its buttons are pressed. Destruction
/// stops it. One thread starts and stops it.
class PointerSource {
  public:
    virtual ~PointerSource() = default;

    /// Presses count from before this returns. `output` lives until the stop and is called on a
    /// thread of the source's own. Throws std::runtime_error. Called once.
    virtual void start(PointerOutput& output) = 0;
    /// Nothing arrives after this has returned. Harmless when repeated. Not from the output's
    /// calls.
    virtual void stop() = 0;
};

} // namespace vantro::capture
