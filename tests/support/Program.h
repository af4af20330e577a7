#pragma once

#include "support/XServer.h"

#include <csignal>
#include <string>
#include <vector>
namespace vantro::test {

/// Starts a program of the search path, which says nothing; one file may be given to it as
/// `givenFile`. Throws std::runtime_error when it cannot be started.
constexpr int givenFile = 8;
pid_t startProgram(std::vector<std::string> arguments, int file = -1);
/// The same for a program that writes a line to the given file when it is ready. Throws
/// std::runtime_error when it ends without.
pid_t startAndRead(std::vector<std::string> arguments, std::string& line);
/// Sends it the signal, and waits until it is gone.
void endProgram(pid_t process, int signal = SIGTERM);

/// Whether a command of the shell does; what it says is not heard.
bool succeeds(const std::string& command);

/// A real compositing manager, which blends the windows of a display, puts shadows around them and
/// lets them fade when they go, from when it is constructed until it is destroyed.
class CompositingManager {
  public:
    /// "picom" or "xcompmgr". Throws std::runtime_error when it does not start.
    CompositingManager(const XServer& server, const std::string& name);
    ~CompositingManager() { endProgram(m_process); }
    CompositingManager(const CompositingManager&) = delete;
    CompositingManager& operator=(const CompositingManager&) = delete;

  private:
    pid_t m_process;
};

} // namespace vantro::test
