#pragma once

#include "base/HostClock.h"
#include "capture/RecordingTarget.h"
#include "capture/pictures/PictureComparison.h"
#include "capture/pictures/PictureFit.h"
#include "capture/wayland/cast/PixelWalk.h"
#include "media/values/PixelBuffer.h"
#include "model/Geometry.h"
#include "pipewire/VideoBuffer.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace vantro::capture::wayland {

/// The newest picture of a screen cast, upright, without what the sender has cut off. A copy:
/// buffers are few, and go back to the sender at once. What a sender says about where its picture
/// has changed may be old, wrong or missing, so pictures are compared. One thread.
class CastPicture {
  public:
    /// False when no picture that can be shown is in it.
    bool take(const pipewire::VideoBuffer& buffer);

    /// Leaves out everything but a part, of the picture that there is and of those to come; of one
    /// of another size the part in the same place.
    void crop(const PictureCrop& crop);

    /// It is a window's: where pictures become larger for its menus, the window stays where it is,
    /// and what hangs over is left out.
    void keepWindowInPlace() { m_isWindow = true; }

    /// Before the first picture.
    bool isEmpty() const { return m_view.pixels == nullptr; }
    const pictures::PictureView& view() const { return m_view; }
    /// Null before the first picture.
    std::shared_ptr<const media::PixelBuffer> copy() const;
    /// When it came about.
    base::HostTime time() const { return m_time; }
    /// Where it has changed since the owner last cleared that; the map of another size is a new
    /// one.
    pictures::TileMap& changed() { return m_changed; }
    /// Where a place in the sender's buffer, of the newest one's make, lies in the whole picture.
    model::Point uprightPlaceOf(model::Point inBuffer) const;
    /// Where one in the whole picture lies in the part of it that is to be seen.
    model::Point placeOf(model::Point upright) const {
        return {upright.x - m_cropCorner.x, upright.y - m_cropCorner.y};
    }

  private:
    void resize(int width, int height);
    void rememberPlace(const pipewire::VideoBuffer& buffer, int width, int height);
    media::color::PixelRect cropIn(const PictureCrop& crop, int width, int height);

    pictures::PictureComparison m_copy{1, 1};
    pictures::PictureView m_view; // of the copy
    pictures::TileMap m_changed{1, 1};
    std::vector<std::uint8_t> m_row; // one that is not BGRX in memory
    base::HostTime m_time;
    base::HostTime m_lastTold; // the sender's time of the newest picture
    // Of the newest buffer:
    model::Point m_corner; // of the part that is to be seen
    model::Size m_part;    // as it lies in the buffer
    std::uint32_t m_transform = 0;
    void followWindow(const PixelWalk& walk, pipewire::Layout layout);

    bool m_isWindow = false;
    std::optional<PictureCrop> m_crop;
    model::Point m_cropCorner; // in the upright picture
};

} // namespace vantro::capture::wayland
