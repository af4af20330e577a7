#pragma once

#include "support/TestWindow.h"

#include <chrono>
#include <filesystem>
#include <vector>

namespace vantro::test {

/// Fills a screen with upright stripes whose color tells how long it has been there and whose
/// distance, in a film of it, how far that is zoomed.
class StripedScreen {
  public:
    static constexpr int period = 40;                            ///< pixels from stripe to stripe
    static constexpr auto tick = std::chrono::milliseconds(100); ///< of a color
    static constexpr int ticks = 125;                            ///< until colors come again

    StripedScreen(const XServer& server, int width, int height);

    /// Shows the color of now; for a test to call while it waits.
    void follow();
    /// What `follow` showed last.
    int shownTick() const { return m_shown; }

  private:
    using Clock = std::chrono::steady_clock;

    TestWindow m_window;
    media::color::PixelRect m_size;
    Clock::time_point m_start = Clock::now();
    int m_shown = -1;
};

/// The stripes of one picture.
struct Stripes {
    int tick = -1; ///< -1 while a color changes
    double period = 0;
};

/// Of each thirtieth of a second of a film, read by ffmpeg; along a line three quarters down, where
/// neither the pointer nor the webcam stand.
std::vector<Stripes> stripesOf(const std::filesystem::path& film);

} // namespace vantro::test
