#pragma once

#include "capture/PointerSource.h"

#include <deque>
#include <optional>

namespace vantro::capture::wayland {

/// Where the pointer was in the last seconds. A value.
class PointerTrail {
  public:
    /// In the order of their times.
    void note(const PointerSample& sample);
    /// On the straight line between the samples around `when`; past them, the nearest. Nothing
    /// where there are none.
    std::optional<model::Point> placeAt(base::HostTime when) const;

  private:
    std::deque<PointerSample> m_samples;
};

} // namespace vantro::capture::wayland
