#pragma once

#include "capture/ShareableContent.h"
#include "model/Choices.h"
#include "model/RecordingMetadata.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace vantro::app::flows {

/// What one recording captures and where it goes.
struct RecorderConfiguration {
    std::filesystem::path outputURL;
    model::Rect captureRect; ///< global points, top-left origin
    std::uint32_t displayID = 0;
    model::CaptureMode captureMode = model::CaptureMode::screen;
    std::optional<capture::ShareableWindow> selectedWindow; ///< in window mode
    bool systemAudioEnabled = false;
    bool microphoneAudioEnabled = false;
    bool webcamEnabled = false;
};

/// How a recording goes.
struct RecorderStatus {
    std::int64_t framesDropped = 0; ///< left out because the encoder had not caught up
    bool isCapturing = true;        ///< false once capture has ended by itself
    bool operator==(const RecorderStatus&) const = default;
};

/// One recording under way, as the flow sees it. Used once.
class Recorder {
  public:
    virtual ~Recorder() = default;

    /// Returns once capture runs. start and stop block, come from one worker thread and throw
    /// VantroError or another std::exception.
    virtual void start() = 0;
    /// Finishes the files.
    virtual model::RecordingMetadata stop() = 0;
    /// Any thread.
    virtual RecorderStatus status() = 0;
};

/// What the desktop offers to the recording flow. Main thread.
class RecordingPlatform {
  public:
    virtual ~RecordingPlatform() = default;

    /// The attached displays, the main one first; empty when they cannot be told.
    virtual std::vector<capture::ShareableDisplay> displays() = 0;
    virtual std::shared_ptr<Recorder> makeRecorder(RecorderConfiguration configuration) = 0;
};

} // namespace vantro::app::flows
