#pragma once

#include "capture/pictures/PictureFit.h"
#include "capture/pictures/TileMap.h"

#include <expected>
#include <string>

#include <xcb/xcb.h>

namespace vantro::capture::x11 {

/// What a stream shows, as BGRX pixels that change. Used by one thread at a time.
class X11PictureSource {
  public:
    virtual ~X11PictureSource() = default;

    /// Takes note of an event of the connection.
    virtual void handle(const xcb_generic_event_t& event) = 0;
    /// Whether `update` may find anything new.
    virtual bool hasChanges() const = 0;
    /// Brings the picture up to date; false when there is none at this moment. The error says why
    /// nothing more will come.
    virtual std::expected<bool, std::string> update() = 0;
    /// The picture after an update that was true. Its size may be another each time.
    virtual pictures::PictureView picture() const = 0;
    /// What has changed since the owner last cleared it: a map of the picture's size.
    virtual pictures::TileMap& changed() = 0;
};

} // namespace vantro::capture::x11
