#pragma once

#include "support/Environment.h"
#include "support/WaylandDesk.h"

#include <string>

#include <sys/types.h>

namespace vantro::test {

/// KWin's virtual session with one output, in the private session of a WaylandDesk, and the genuine
/// portal over KDE's part of it. Of its screens nothing can be recorded: it sends pictures of
/// windows only. Found through the environment.
class KWinDesk {
  public:
    static bool isInstalled();

    /// Throws std::runtime_error when something does not start. `session` outlives this.
    explicit KWinDesk(WaylandDesk& session);
    ~KWinDesk();
    KWinDesk(const KWinDesk&) = delete;
    KWinDesk& operator=(const KWinDesk&) = delete;

    /// Has the portal remember that a user has granted that window, under the token that this
    /// returns; empty while KWin has no window of that title.
    static std::string grant(const std::string& title);

  private:
    WaylandDesk& m_session;
    Environment m_environment;
    pid_t m_kwin = -1;
};

} // namespace vantro::test
