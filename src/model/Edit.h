#pragma once

#include "model/Background.h"
#include "model/Canvas.h"
#include "model/Choices.h"
#include "model/ClickEvent.h"
#include "model/RecordingMetadata.h"
#include "model/SharedList.h"
#include "model/TimelineSegment.h"

#include <optional>

namespace vantro::model {

/// What the user has made of a recording. A value; copies share clicks and segments, so a step of
/// editing costs what it changes. The defaults are those of a fresh edit.
struct Edit {
    SharedList<ClickEvent> clickEvents; ///< the zooms, normalized; "editableClickEvents" in files
    SharedList<TimelineSegment> segments = fullLengthTimeline();
    BackgroundSettings background;
    CanvasAspectRatio canvasAspectRatio = CanvasAspectRatio::automatic;
    double cursorScale = 3.0; ///< 0 hides the pointer
    WebcamPosition webcamPosition = WebcamPosition::bottomRight;
    double webcamSize = 0.2; ///< fraction of the canvas width
    bool webcamHidden = false;
    bool webcamMirrored = false;
    double systemAudioVolume = 1; ///< 0 to 2
    double microphoneVolume = 1;  ///< 0 to 2
    bool microphoneNoiseReduced = false;
    bool operator==(const Edit&) const = default;
};

/// What films of one author have in common.
struct Look {
    BackgroundSettings background;
    CanvasAspectRatio canvasAspectRatio = CanvasAspectRatio::automatic;
    bool operator==(const Look&) const = default;
};

Look lookOf(const Edit& edit);
/// The edit with that look.
Edit withLook(Edit edit, const Look& look);

/// The edit that a new recording begins with: each of its clicks a zoom, normalized, and all of its
/// length; the look that new recordings have, if any; the rest as in `choices`.
Edit freshEdit(const RecordingMetadata& metadata, Edit choices = {},
               const std::optional<Look>& look = {});

} // namespace vantro::model
