#pragma once

#include "base/HostClock.h"
#include "capture/x11/windows/X11WindowTree.h"

#include <vector>

namespace vantro::capture::x11 {

/// Where on the screen our own windows can be seen. That is more than their rectangles where a
/// compositing manager draws shadows around windows, lets them fade after they have gone, and shows
/// them where they were until it has drawn anew. A value; instants are arguments.
class X11OwnPlaces {
  public:
    // Desktops draw shadows of up to about 60 pixels. More hides the shadows of others nearby, less
    // lets the edge of ours show.
    static constexpr int shadow = 64; // pixels
    // Fading takes a quarter to a third of a second where it is on. Longer only costs time.
    static constexpr base::HostDuration fading = std::chrono::milliseconds(500);

    /// How far a window can be seen beyond its rectangle.
    static int reach(bool isComposited) { return isComposited ? shadow : 0; }

    /// Takes note of our windows as they are now. In pixels of the screen.
    std::vector<media::color::PixelRect> update(const std::vector<X11Placement>& own,
                                                bool isComposited, base::HostTime now);
    /// Whether a place of the last update is to be given up.
    bool hasExpired(base::HostTime now) const;

  private:
    struct Place {
        xcb_window_t window;
        media::color::PixelRect rect;
        bool operator==(const Place&) const = default;
    };
    /// One a window at the most: all places that it has left lately.
    struct FadingPlace {
        xcb_window_t window;
        media::color::PixelRect rect;
        base::HostTime end;
    };
    void fade(const Place& place, base::HostTime end);

    std::vector<Place> m_shown;
    std::vector<FadingPlace> m_fading;
};

/// The rectangle with `margin` more on each side.
media::color::PixelRect grown(media::color::PixelRect rect, int margin);

} // namespace vantro::capture::x11
