#pragma once

#include "model/Recording.h"
#include "model/SharedList.h"
#include "render/scene/PixelRect.h"
#include "render/timing/ZoomAnimator.h"

#include <optional>

namespace vantro::render {

/// Where the pointer was at `t`, in the samples' points: between samples by straight lines,
/// sticking to the first and last; nothing without samples.
std::optional<model::Point> pointerAt(const std::vector<model::CursorPosition>& positions,
                                      double t);

/// Where the camera and the pointer are at each instant of a recording, in its video's pixels.
/// Records hold points: this is the one place where they become pixels. Immutable; any thread.
class SourceMotion {
  public:
    /// `videoSize` in pixels. Copies no samples.
    SourceMotion(model::Recording recording, const model::SharedList<model::ClickEvent>& clicks,
                 model::Size videoSize);

    /// At `t` seconds of source time.
    ZoomKeyframe camera(double t) const { return m_animator.keyframe(t); }
    /// See pointerAt.
    std::optional<PixelPoint> pointer(double t) const;

  private:
    model::Recording m_recording;
    ZoomAnimator m_animator;
};

} // namespace vantro::render
