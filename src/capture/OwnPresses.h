#pragma once

#include "base/Guarded.h"
#include "base/HostClock.h"

#include <deque>

namespace vantro::capture {

/// When buttons were pressed in our own windows, as those tell: where a desktop tells of presses
/// but not of windows, it is how ours are left out. The newest few are kept. Any thread.
class OwnPresses {
  public:
    /// The one of this program.
    static OwnPresses& ofThisProgram();

    void note(base::HostTime pressedAt);
    /// Whether one of them is the press that came at that time.
    bool has(base::HostTime pressedAt) const;

  private:
    base::Guarded<std::deque<base::HostTime>> m_newest;
};

} // namespace vantro::capture
