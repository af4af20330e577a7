#pragma once

#include "export/ExportResolution.h"
#include "media/Composition.h"
#include "media/VideoComposition.h"
#include "model/ProjectData.h"
#include "render/Renderer.h"
#include "render/SegmentTimeMap.h"
#include "render/ZoomAnimator.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace vantro {

/// A recording and its edit: all that an export, a still frame or an inspection depends on.
struct EditedRecording {
    std::filesystem::path videoURL;
    RecordingMetadata metadata;
    std::optional<BackgroundSettings> backgroundSettings;
    CanvasAspectRatio canvasAspectRatio = CanvasAspectRatio::automatic;
    std::vector<TimelineSegment> segments;
    std::vector<ClickEvent> clickEvents;
    std::vector<CursorPosition> cursorPositions;
    double cursorScale = 3.0;
    WebcamPosition webcamPosition = WebcamPosition::bottomRight;
    double webcamSize = 0.2;
};

/// The edit that a project holds, with its movie at `videoURL`.
EditedRecording editedRecording(const ProjectData& project, std::filesystem::path videoURL);

/// The recording's movie with what follows from it and the edit, before anything is drawn.
struct OpenedRecording {
    Asset asset;
    AssetTrack videoTrack;
    SegmentTimeMap timeMap;
    std::shared_ptr<const ZoomAnimator> animator; ///< in video pixels

    Size videoSize() const { return videoTrack.naturalSize; }
};

/// Opens the movie. Throws VantroError exportFailed, for example "No video track found".
OpenedRecording openRecording(const EditedRecording& recording);

/// The canvas for a base size, pixels. Sizes that no picture can have throw VantroError.
Size renderSize(const EditedRecording& recording, Size baseSize);

/// The segment composition of a recording with a compositor that is ready to draw it.
struct ComposedMovie {
    Composition composition;
    VideoComposition video;
};

ComposedMovie composeMovie(const EditedRecording& recording, const OpenedRecording& opened,
                           Size renderSize, int frameRate, std::unique_ptr<Renderer> renderer);

} // namespace vantro
