#pragma once

#include "base/HostClock.h"
#include "capture/pictures/PictureFit.h"
#include "capture/pictures/TileMap.h"

#include <expected>
#include <optional>
#include <string>

namespace vantro::capture {

/// What a stream shows, as BGRX pixels that change: all that a platform has to fetch for a
/// FrameLoop. Used by one thread at a time.
class PictureSource {
  public:
    virtual ~PictureSource() = default;

    /// Waits until something may have come, `wakeUp` (a file descriptor) is readable, or
    /// `deadline`, when given, is there. What `takeNews` has not taken yet need not end it.
    virtual void wait(int wakeUp, std::optional<base::HostTime> deadline = {}) = 0;
    /// Takes note of what has come. The error says why nothing more will; it is empty when the user
    /// has ended it by the desktop's own means.
    virtual std::expected<void, std::string> takeNews() = 0;
    /// Whether `update` may find anything new.
    virtual bool hasChanges() const = 0;
    /// Brings the picture up to date; false when there is none at this moment. The error says why
    /// nothing more will come.
    virtual std::expected<bool, std::string> update() = 0;
    /// The picture after an update that was true. Its size may be another each time.
    virtual pictures::PictureView picture() const = 0;
    /// When that picture came about; nothing where the source does not know.
    virtual std::optional<base::HostTime> pictureTime() const { return {}; }
    /// What has changed since the owner last cleared it: a map of the picture's size.
    virtual pictures::TileMap& changed() = 0;
};

} // namespace vantro::capture
