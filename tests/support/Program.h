#pragma once

#include "support/XServer.h"

#include <string>
#include <vector>

#include <sys/types.h>

namespace vantro::test {

/// The list as the C library takes arguments, ended with a null. Valid for as long as the list is.
std::vector<char*> pointersTo(std::vector<std::string>& list);

/// A program of the search path that runs on a display until it is ended. Says nothing.
class Program {
  public:
    /// Throws std::runtime_error when it cannot be started.
    Program(const std::string& display, const std::vector<std::string>& arguments);
    /// Ends it, and waits until it is gone.
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Ends it as nothing else can; returns when it is gone.
    void kill();

  private:
    void end(int signal);

    pid_t m_process = -1;
};

/// A real compositing manager, which blends the windows of a display, puts shadows around them and
/// lets them fade when they go, from when it is constructed until it is destroyed.
class CompositingManager {
  public:
    /// "picom" or "xcompmgr". Throws std::runtime_error when it does not start.
    CompositingManager(const XServer& server, const std::string& name);

  private:
    Program m_program;
};

} // namespace vantro::test
