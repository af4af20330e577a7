#pragma once

#include "media/color/ColorConversion.h"

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace vantro::test {

/// A private X server on a free display number, ready when constructed, gone when destroyed.
class XServer {
  public:
    struct Options {
        int width = 640;
        int height = 480;
        int depth = 24;
        // Initializers, so that a test may name just one of them:
        // NOLINTBEGIN(*-redundant-member-init)
        std::vector<std::string> missingExtensions = {}; ///< for example "MIT-SHM"
        /// An empty folder: Xorg runs from it in place of Xvfb, see XorgDesk.h. Its first output
        /// has 800 × 600 pixels.
        std::filesystem::path xorgFolder = {};
        // NOLINTEND(*-redundant-member-init)
    };

    /// Throws std::runtime_error when the server does not start.
    explicit XServer(const Options& options);
    XServer() : XServer(Options{}) {}
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    /// For example ":12".
    const std::string& display() const { return m_display; }
    /// Ends the server as a crash would; returns when it is gone.
    void crash();

  private:
    pid_t m_process = -1;
    std::string m_display;
};

/// Puts a property of text on the root window, as xrdb does with RESOURCE_MANAGER.
void setRootProperty(const XServer& server, const std::string& name, const std::string& value);

/// Puts a property of a number there, as window managers do.
void setRootNumber(const XServer& server, const std::string& name, std::uint32_t number);

/// Adds a monitor to the X screen, in its pixels, without an output of its own.
void addMonitor(const XServer& server, const std::string& name, media::color::PixelRect rect,
                bool isPrimary);

} // namespace vantro::test
