#pragma once

#include "stage/Drawing.h"

#include <memory>
#include <optional>
#include <string>

namespace vantro::stage {

struct Press {
    unsigned window = 0;
    double x = 0; ///< in the window
    double y = 0;
    int button = 0; ///< 1 left, 3 right
};

/// A window with a picture of its own that is drawn in memory and then shown at once.
class StageWindow {
  public:
    virtual ~StageWindow() = default;
    virtual unsigned id() const = 0;
    virtual Box frame() const = 0; ///< on the screen
    virtual cairo_t* context() = 0;
    virtual void show() = 0;
};

enum class WindowKind { desktop, ordinary };

/// The X connection with the windows that it makes. Throws std::runtime_error when there is no
/// display. One thread.
class StageDisplay {
  public:
    /// `display` as in DISPLAY; empty takes that variable.
    explicit StageDisplay(const std::string& display);
    ~StageDisplay();

    Box screen() const;
    /// A window without the window manager's decoration, exactly at `frame`.
    std::unique_ptr<StageWindow> makeWindow(WindowKind kind, Box frame, const std::string& title);

    struct Events {
        std::optional<Press> press;
        std::optional<unsigned> exposedWindow;
        bool isLost = false; ///< the display has gone
    };
    /// The next event, waiting for it until `seconds` have passed; empty when none came.
    Events await(double seconds);

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::stage
