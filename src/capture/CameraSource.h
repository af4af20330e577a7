#pragma once

#include "base/HostClock.h"
#include "media/values/PixelBuffer.h"

#include <memory>
#include <string>

namespace vantro::capture {

/// Why a camera cannot be recorded.
struct CameraRefusal {
    enum class Kind { denied, unavailable, broken };
    Kind kind = Kind::unavailable;
    std::string reason; ///< for the user
};

/// What a camera saw at a time.
struct CameraPicture {
    std::shared_ptr<const media::PixelBuffer> pixels; ///< of an even size, the same for all
    base::HostTime time;
};

/// Receives the pictures of one camera. One thread at a time.
class CameraOutput {
  public:
    virtual ~CameraOutput() = default;

    /// Times ascend.
    virtual void picture(const CameraPicture& picture) = 0;
    /// Nothing comes for now: the camera is gone, stalls or sends what cannot be shown.
    virtual void cameraMissing(const std::string& reason) = 0;
    /// It is there again.
    virtual void cameraReturned() = 0;
};

/// A camera that is recorded, already opened. Destruction stops it. One thread calls it.
class CameraSource {
  public:
    virtual ~CameraSource() = default;

    /// Waits for the first picture until then at the latest; false when there is none yet.
    virtual bool awaitPicture(base::HostTime until) = 0;
    /// The newest picture so far comes first, from another thread as all others do. `output` lives
    /// until the stop. Called once.
    virtual void start(CameraOutput& output) = 0;
    /// Nothing arrives after this has returned. Harmless when repeated. Not from the output's
    /// calls.
    virtual void stop() = 0;
};

} // namespace vantro::capture
