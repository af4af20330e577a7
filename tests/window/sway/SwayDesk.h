#pragma once

#include "support/WaylandDesk.h"

namespace vantro::test {

/// Headless sway with two outputs of 1280 × 720 pixels, HEADLESS-1 and HEADLESS-2 to the right of
/// it, in the private session of a WaylandDesk. Found through the environment.
class SwayDesk {
  public:
    static bool isInstalled();

    /// Throws std::runtime_error when it does not start.
    SwayDesk();
    ~SwayDesk();
    SwayDesk(const SwayDesk&) = delete;
    SwayDesk& operator=(const SwayDesk&) = delete;

    WaylandDesk& session() { return m_session; }
    /// A command of sway's, for example "output HEADLESS-2 scale 1.5".
    static bool tell(const std::string& command);

  private:
    WaylandDesk m_session;
    pid_t m_sway = -1;
};

} // namespace vantro::test
