#pragma once

#include "capture/PlatformAbilities.h"
#include "capture/Recorder.h"
#include "capture/RecordingRequest.h"
#include "capture/ShareableContent.h"

#include <memory>
#include <vector>

namespace vantro::app::flows {

/// What the desktop offers to the recording flow. Main thread; nothing here takes long.
class RecordingPlatform {
  public:
    virtual ~RecordingPlatform() = default;

    /// The attached displays, the main one first; empty when they cannot be told.
    virtual std::vector<capture::ShareableDisplay> displays() = 0;
    virtual capture::PlatformAbilities abilities() = 0;
    virtual std::shared_ptr<capture::Recorder> makeRecorder(capture::RecordingRequest request) = 0;
};

} // namespace vantro::app::flows
