#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vantro::control {

/// What a running Vantro does when another program tells it to. Each is called on the service's
/// own thread and returns soon; what is empty is refused, and what throws std::runtime_error, with
/// that text. A token, where the desktop has given one,
/// lets the window come to the front.
struct Commands {
    std::function<void()> stop;   ///< ends the recording under way
    std::function<void()> mark;   ///< zooms to where the pointer is now
    std::function<void()> pause;  ///< pauses the recording under way, or resumes it
    std::function<void()> toggle; ///< starts a recording, or ends the one under way
    /// Shows the window, with what lies at these addresses, "file:///…", opened in it.
    std::function<void(const std::vector<std::string>& addresses, const std::string& token)> show{};
    /// One of the actions in the desktop entry.
    std::function<void(const std::string& name)> act{};
};

enum class Role { program, recorder };

/// Takes commands over the session bus, in each role that it has been given. A role that another
/// program has already is taken up when that one ends. One thread constructs, uses and destroys it;
/// no command comes after the destruction.
class ControlService {
  public:
    /// Nothing where no session bus can be reached, which is logged.
    static std::unique_ptr<ControlService> connect(Commands commands);
    virtual ~ControlService() = default;

    virtual void take(Role role) = 0;
    virtual void release(Role role) = 0;
};

} // namespace vantro::control
