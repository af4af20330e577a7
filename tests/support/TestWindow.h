#pragma once

#include "support/XServer.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>
namespace vantro::test {

/// A plain window that no window manager touches, for a test to draw in. 0xRRGGBB colors. What is
/// drawn is on the screen when a call returns.
class TestWindow {
  public:
    struct Names {
        // Initializers, so that a test may name just one of them:
        // NOLINTBEGIN(*-redundant-member-init)
        std::string title = {};
        std::string applicationClass = {};
        // NOLINTEND(*-redundant-member-init)
        std::uint32_t process = 0; ///< that it says it belongs to; none when 0
        bool isBlended = false;    ///< colors are premultiplied 0xAARRGGBB
    };

    TestWindow(const XServer& server, media::color::PixelRect rect, std::uint32_t color,
               const Names& names);
    TestWindow(const XServer& server, media::color::PixelRect rect, std::uint32_t color)
        : TestWindow(server, rect, color, Names{}) {}
    ~TestWindow();
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    std::uint32_t id() const;
    void fill(std::uint32_t color);
    /// `rect` in pixels of the window.
    void fill(media::color::PixelRect rect, std::uint32_t color);

    /// Position and size on the screen. Pixels that are new show the color that it was made with.
    void place(media::color::PixelRect rect);
    /// Puts it above or below all others.
    void raise();
    void lower();
    /// Gives it a property of numbers, such as _NET_WM_ICON.
    void setNumbers(const std::string& property, const std::vector<std::uint32_t>& numbers);
    /// Only these parts of it show from now on, in pixels of the window.
    void shape(const std::vector<media::color::PixelRect>& parts);
    void hide();
    void show();
    /// Makes it a child of another window, as a window manager does, there in the other's pixels.
    void moveInto(const TestWindow& parent, int x, int y);
    /// It is gone from the screen when this returns; nothing else may be done with it.
    void close();

    /// From now on fills a square of `side` pixels around each press, as soon as it arrives.
    void flashOnClick(std::uint32_t color, int side);

  private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace vantro::test
