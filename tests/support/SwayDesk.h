#pragma once

#include "support/Environment.h"
#include "support/WaylandDesk.h"

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace vantro::test {

/// Headless sway with two outputs of 1280 × 720 pixels, HEADLESS-1 and HEADLESS-2 to the right of
/// it, in the private session of a WaylandDesk. Found through the environment.
class SwayDesk {
  public:
    static bool isInstalled();
    /// Whether the portal's part for it is.
    static bool hasPortal();

    /// Throws std::runtime_error when it does not start. `session` outlives this.
    explicit SwayDesk(WaylandDesk& session);
    ~SwayDesk();
    SwayDesk(const SwayDesk&) = delete;
    SwayDesk& operator=(const SwayDesk&) = delete;

    WaylandDesk& session() { return m_session; }
    /// Starts one more, which is the environment's from then on. Its outputs WL-1 and WL-2 are
    /// windows of the first, so that they can be unplugged. Throws std::runtime_error.
    void nest();
    bool unplug(const std::string& nestedOutput);
    /// A command of sway's, for example "output HEADLESS-2 scale 1.5".
    static bool tell(const std::string& command);
    /// The genuine portal, which grants an output to whoever asks.
    void startPortal(const std::string& output);

  private:
    void start(const std::string& configuration, const std::string& lastOutput);

    WaylandDesk& m_session;
    Environment m_environment;
    std::vector<pid_t> m_programs;
    std::filesystem::path m_hostSocket; // of the sway that has the nested one's windows
};

} // namespace vantro::test
