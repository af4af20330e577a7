#pragma once

#include "capture/x11/pictures/X11LivePicture.h"
#include "capture/x11/pictures/X11PictureSource.h"
#include "capture/x11/pictures/X11Underlay.h"
#include "capture/x11/windows/X11Content.h"

#include <memory>
#include <optional>
#include <vector>

namespace vantro::capture::x11 {

/// A rectangle of the X screen without our own windows. Follows its monitor when that moves or gets
/// another size; ends when every monitor that it began on has gone.
class X11ScreenSource final : public X11PictureSource {
  public:
    struct Place {
        media::color::PixelRect area; ///< pixels of the X screen, inside of it
        std::uint32_t monitor = 0;    ///< shown as a whole; 0 for an area that stays where it is
    };

    X11ScreenSource(std::unique_ptr<X11Connection> connection, Place place,
                    const X11Geometry& geometry, X11OwnWindows own);

    void handle(const xcb_generic_event_t& event) override;
    bool hasChanges() const override;
    pictures::PictureView picture() const override;
    pictures::TileMap& changed() override { return m_changed; }

  private:
    std::expected<bool, std::string> fetch() override;
    std::expected<void, std::string> follow();
    media::color::PixelRect areaNow(const X11Geometry& geometry) const;
    void show(media::color::PixelRect area);
    bool read();
    bool isClean(X11Underlay& underlay);
    bool restack(X11Underlay& underlay);

    Place m_place;                         // as the recording began
    media::color::PixelRect m_monitorRect; // likewise
    std::vector<std::uint32_t> m_monitors; // that the area lay on then
    media::color::PixelRect m_area;
    std::unique_ptr<X11LivePicture> m_live;
    std::optional<X11Underlay> m_underlay; // absent where the server cannot keep windows apart
    pictures::TileMap m_changed{1, 1};
    std::uint8_t m_firstRandrEvent = 0; // 0: not available
    bool m_isGeometryStale = false;     // monitors or the screen's size may have changed
};

} // namespace vantro::capture::x11
