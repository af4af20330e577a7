#pragma once

#include "export/ExportResolution.h"
#include "media/Composition.h"
#include "media/VideoComposition.h"
#include "model/ProjectData.h"
#include "render/scene/Renderer.h"
#include "render/timing/SegmentTimeMap.h"
#include "render/timing/ZoomAnimator.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace vantro::exporting {

/// A recording and its edit: all that an export, a still frame or an inspection depends on.
struct EditedRecording {
    std::filesystem::path videoURL;
    model::RecordingMetadata metadata;
    std::optional<model::BackgroundSettings> backgroundSettings;
    model::CanvasAspectRatio canvasAspectRatio = model::CanvasAspectRatio::automatic;
    std::vector<model::TimelineSegment> segments;
    std::vector<model::ClickEvent> clickEvents;
    std::vector<model::CursorPosition> cursorPositions;
    double cursorScale = 3.0;
    model::WebcamPosition webcamPosition = model::WebcamPosition::bottomRight;
    double webcamSize = 0.2;
};

/// The edit that a project holds, with its movie at `videoURL`.
EditedRecording editedRecording(const model::ProjectData& project, std::filesystem::path videoURL);

/// The recording's movie with what follows from it and the edit, before anything is drawn.
struct OpenedRecording {
    media::Asset asset;
    media::AssetTrack videoTrack;
    render::SegmentTimeMap timeMap;
    std::shared_ptr<const render::ZoomAnimator> animator; ///< in video pixels

    model::Size videoSize() const { return videoTrack.naturalSize; }
};

/// Opens the movie. Throws VantroError exportFailed, for example "No video track found".
OpenedRecording openRecording(const EditedRecording& recording);

/// The canvas for a base size, pixels. Sizes that no picture can have throw VantroError.
model::Size renderSize(const EditedRecording& recording, model::Size baseSize);

/// The segment composition of a recording with a compositor that is ready to draw it.
struct ComposedMovie {
    media::Composition composition;
    media::VideoComposition video;
};

ComposedMovie composeMovie(const EditedRecording& recording, const OpenedRecording& opened,
                           model::Size renderSize, int frameRate,
                           std::unique_ptr<render::Renderer> renderer);

} // namespace vantro::exporting
