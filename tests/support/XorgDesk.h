#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vantro::test {

/// A real Xorg server without hardware: outputs DUMMY0 to DUMMY15 that can be switched like those
/// of a graphics card, a touch screen and a pen. It needs root for a console that it does not use.
bool canRunXorg();

/// How to start it. `folder` holds its settings, its log and the sockets of its devices.
std::vector<std::string> xorgCommand(const std::filesystem::path& folder, int displayNumberFd);

/// Runs xrandr on a display to its end, as in `{"--output", "DUMMY1", "--off"}`. Throws
/// std::runtime_error when it fails.
void runXrandr(const std::string& display, const std::vector<std::string>& arguments);

/// A finger on the touch screen or the tip of the pen. The server has handled what a call does when
/// it returns. Throws std::runtime_error when the server does not answer.
class InputDevice {
  public:
    enum class Kind { touchScreen, pen };

    /// Of the server whose folder this is.
    InputDevice(const std::filesystem::path& folder, Kind kind);
    ~InputDevice();
    InputDevice(const InputDevice&) = delete;
    InputDevice& operator=(const InputDevice&) = delete;

    /// Touches or presses a pixel of the screen of 800 × 600, and lets go.
    void tap(int x, int y) const;

  private:
    void send(const void* message, std::size_t size) const;
    void awaitServer() const;

    Kind m_kind;
    int m_socket;
};

} // namespace vantro::test
