#pragma once

#include "base/HostClock.h"
#include "media/values/PixelBuffer.h"
#include "model/Geometry.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantro::capture {

/// What a stream shows: a display without some windows, or one window wherever it stands.
struct ContentFilter {
    std::uint32_t displayID = 0;
    std::vector<std::uint32_t> excludedWindows; ///< of the display
    std::optional<std::uint32_t> window;        ///< this window alone instead of the display
};

struct ScreenStreamConfiguration {
    int width = 0; ///< pixels, even; content beyond it is cut off
    int height = 0;
    /// The part of the display to show: points from the display's top-left corner. Absent: all.
    std::optional<model::Rect> sourceRect;
    base::HostDuration minimumFrameInterval{1'000'000'000 / 60};
};

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
    /// The stream has ended by itself; no sample follows. Same thread as the samples.
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
