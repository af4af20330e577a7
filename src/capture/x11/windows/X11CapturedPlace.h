#pragma once

#include "capture/RecordingTarget.h"
#include "capture/x11/windows/X11Content.h"
#include "capture/x11/windows/X11VisiblePart.h"

#include <optional>

namespace vantro::capture::x11 {

/// Where on the X screen the picture of a recording is, also when its display or window moves and
/// changes its size. Outlived by the connection; same thread.
class X11CapturedPlace {
  public:
    X11CapturedPlace(const X11Connection& connection, const RecordingTarget& target);

    /// Takes note of an event of the connection.
    void handle(const xcb_generic_event_t& event);
    /// Where the pointer is at this moment: points from the picture's top-left corner, as the movie
    /// shows it. Nothing when it is on another X screen or the connection is lost.
    std::optional<model::Point> pointer();

  private:
    void follow();
    void followWindow();
    void followDisplay();

    const X11Connection& m_connection;
    X11VisiblePartEvents m_windowEvents;
    const RecordingTarget m_target;
    double m_scale;                    // pixels per point
    xcb_window_t m_window;             // that the pointer is looked for in: the chosen one or root
    media::color::PixelRect m_picture; // what the movie shows of it now, in its pixels
    int m_firstWidth = 0;              // of the picture when it began
    int m_firstHeight = 0;
    std::uint8_t m_firstRandrEvent = 0; // 0: not available
    bool m_isStale = true;
};

} // namespace vantro::capture::x11
