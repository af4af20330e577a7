#pragma once

#include "capture/x11/server/X11Image.h"
#include "capture/x11/windows/X11CoveredWindow.h"
#include "capture/x11/windows/X11OwnPlaces.h"
#include "capture/x11/windows/X11OwnWindows.h"

#include <memory>
#include <span>
#include <vector>

namespace vantro::capture::x11 {

/// Puts what lies beneath our own windows in their place in a picture of the screen: the contents
/// of all other windows there, in stacking order, over the root's background. With and without a
/// compositing manager. While none of our windows is in view it costs nothing but a look when
/// windows come, go and move. Outlived by the connection; same thread.
class X11Underlay {
  public:
    /// `area` is the part of the screen that the picture shows. The owner selects the root's
    /// substructure events.
    X11Underlay(const X11Connection& connection, media::color::PixelRect area, X11OwnWindows own);

    void setArea(media::color::PixelRect area);
    void handle(const xcb_generic_event_t& event);
    /// Windows have come, gone or moved since `restack`, or have had the time to fade.
    bool isStale() const;
    /// What lies beneath our windows has changed since `paint`.
    bool hasChanges() const;

    /// The picture is read from now on.
    void beginReading();
    /// Whether the picture may show one of our windows although `restack` found none in another
    /// place: one that has come and gone again since `beginReading`, or was elsewhere for a moment.
    bool mayHaveShown() const { return m_mayHaveShown; }
    /// Finds all windows anew. True when our windows have other places in the picture: then all of
    /// it is to be read again.
    bool restack();
    /// Where our windows can be seen, in pixels of the picture.
    std::span<const media::color::PixelRect> hidden() const { return m_hidden; }
    /// Whether a window has still to paint what ours have hidden until now.
    bool awaitsPainting();
    /// What has not been painted until now is not waited for again.
    void awaitNoLonger();
    /// Replaces our windows in the picture and adds what has changed beneath them to `changed`.
    void paint(X11Image& picture, pictures::TileMap& changed);

  private:
    struct Patch;

    void followWindow(const xcb_generic_event_t& event);
    void hide(std::vector<media::color::PixelRect> places);
    void updateCovered(const std::vector<X11Placement>& others);
    void readBackground();
    void compose(Patch& patch) const;
    media::color::PixelRect onScreen(media::color::PixelRect rect) const;

    const X11Connection& m_connection;
    media::color::PixelRect m_area;
    X11OwnWindows m_own;
    X11OwnPlaces m_places;
    bool m_isStale = true;
    std::vector<xcb_window_t> m_ours; // shown, as of `restack`
    std::vector<xcb_window_t> m_come; // since `beginReading`; once gone, nobody can tell whose
    bool m_mayHaveShown = false;
    std::vector<media::color::PixelRect> m_hidden;
    std::vector<std::unique_ptr<X11CoveredWindow>> m_covered; // lowest first
    std::unique_ptr<X11Image> m_background; // the root's, of the whole area; while it is needed
    xcb_atom_t m_compositingManager;        // the selection that tells whether one runs
    bool m_isComposited = false;            // it blends windows

    struct Patch {
        media::color::PixelRect rect; // in pixels of the picture
        std::vector<std::uint8_t> pixels;
        bool isStale = true;
    };
    std::vector<Patch> m_patches;
};

} // namespace vantro::capture::x11
