#pragma once

#include "capture/x11/pictures/X11LivePicture.h"
#include "capture/x11/pictures/X11PictureSource.h"
#include "capture/x11/windows/X11VisiblePart.h"

#include <memory>
#include <vector>

namespace vantro::capture::x11 {

/// One window with the frame that the window manager has put around it, wherever it stands: the
/// server keeps its pixels apart from the screen (extension Composite), so that what covers it or
/// cuts it off does not show. While it is not shown, its last picture stands.
class X11WindowSource final : public X11PictureSource {
  public:
    /// The error is for the user. Waits shortly for the window to paint what was covered.
    static std::expected<std::unique_ptr<X11PictureSource>, std::string>
    create(std::unique_ptr<X11Connection> connection, xcb_window_t window);
    ~X11WindowSource() override;

    void handle(const xcb_generic_event_t& event) override;
    bool hasChanges() const override;
    pictures::PictureView picture() const override;
    pictures::TileMap& changed() override { return m_changed; }

  private:
    X11WindowSource(std::unique_ptr<X11Connection> connection, xcb_window_t window);

    std::expected<bool, std::string> fetch() override;

    bool follow();
    void blackenCutOut();
    void redirect(xcb_window_t topLevel);
    void releasePixmap();
    void awaitFirstPainting();

    X11VisiblePartEvents m_events;
    xcb_window_t m_window;          // as the user chose it
    xcb_window_t m_topLevel = 0;    // the frame around it
    xcb_pixmap_t m_pixmap = 0;      // its pixels; 0 while it is not shown
    media::color::PixelRect m_crop; // the frame's visible part, in pixels of the pixmap
    std::vector<media::color::PixelRect>
        m_cutOut; // of the picture, where the window is not a rectangle
    std::unique_ptr<X11LivePicture> m_live;
    pictures::TileMap m_changed{1, 1};
    bool m_isStale = true;    // its size, frame or visibility may have changed
    bool m_mustPaint = false; // parts of it had no pixels when it was redirected
};

} // namespace vantro::capture::x11
