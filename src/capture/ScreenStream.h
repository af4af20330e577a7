#pragma once

#include "base/HostClock.h"
#include "media/values/PixelBuffer.h"

#include <memory>
#include <string>

namespace vantro::capture {

enum class FrameStatus { complete, idle, blank, suspended, started, stopped };

struct ScreenSample {
    FrameStatus status = FrameStatus::complete;
    base::HostTime presentationTime; ///< when the picture was on the screen
    /// i420, BT.709 limited range, without the pointer; absent unless the status is complete.
    std::shared_ptr<const media::PixelBuffer> pixels;
};

/// What becomes of a sample. A stream offers the picture of a refused one again at its next frame
/// time, so that the last state of a screen that comes to rest is never lost.
enum class SampleDisposition { taken, refused };

/// Receives a stream's samples, one at a time on a serial thread of the stream's own, which is
/// named "com.vantro.capture".
class ScreenStreamOutput {
  public:
    virtual ~ScreenStreamOutput() = default;

    virtual SampleDisposition screenSample(const ScreenSample& sample) = 0;
    /// False in a pause: what changes meanwhile is offered as one picture when it is over, as of
    /// then. Same thread; asked before each picture is made.
    virtual bool wantsPicture() { return true; }
    /// The stream has ended by itself; no sample follows. Without an error the user has ended it,
    /// by the desktop's own means. Same thread as the samples.
    virtual void streamStopped(const std::string& error) = 0;
};

/// A running picture of a display, area or window.
///
/// Constructed with everything that it needs from the platform already open, so that the first
/// picture, always complete, comes at once after the start. Destruction stops it. One thread starts
/// and stops it.
class ScreenStream {
  public:
    virtual ~ScreenStream() = default;

    /// `output` lives until the capture is stopped. Throws std::runtime_error when the platform
    /// refuses. Called once.
    virtual void startCapture(ScreenStreamOutput& output) = 0;
    /// No sample arrives after this has returned. Not from the output's calls.
    virtual void stopCapture() = 0;
};

} // namespace vantro::capture
