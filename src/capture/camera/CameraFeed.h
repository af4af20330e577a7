#pragma once

#include "base/Guarded.h"
#include "base/HostClock.h"
#include "capture/CameraSource.h"
#include "media/CameraPictures.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>

namespace vantro::capture::camera {

/// What all cameras share between the device and who records it: pictures are converted, and the
/// absence of pictures is told, once for each. Fed by the camera's one thread, which need not stop
/// to do more than that; `awaitPicture` and `start` come from another one.
class CameraFeed {
  public:
    /// A picture has come, of a time that `now` is not before. One that is broken is left out.
    void arrived(const media::RawPicture& raw, base::HostTime time, base::HostTime now);
    /// The device is open, and pictures are due from now on.
    void opened(base::HostTime now);
    /// There is no device, until it is opened again.
    void missing(const std::string& reason);
    /// Called a few times a second at least.
    void passTime(base::HostTime now);
    /// How long pictures have been due without any.
    base::HostDuration overdue(base::HostTime now) const;

    bool awaitPicture(base::HostTime until);
    void start(CameraOutput& output) { m_output = &output; }
    /// When the camera's thread has ended.
    void stop() { m_output = nullptr; }

  private:
    void deliver(CameraPicture picture);
    void tell();

    std::atomic<CameraOutput*> m_output = nullptr;
    // The camera's thread:
    media::CameraPictures m_pictures;
    std::optional<base::HostTime> m_dueSince; ///< the latest good picture or the opening
    base::HostTime m_latest;                  ///< time of a picture
    int m_broken = 0;                         ///< pictures since the last good one
    std::string m_missing;                    ///< why nothing comes; empty while it does
    bool m_isToldMissing = false;
    CameraPicture m_early; ///< the newest one that nobody has taken

    std::mutex m_mutex;
    std::condition_variable m_came;
    bool m_hasPicture = false; // guarded by m_mutex
};

/// When a picture was taken: what the sender says, where that can be.
base::HostTime plausibleTime(std::optional<base::HostTime> said, base::HostTime arrival);

} // namespace vantro::capture::camera
