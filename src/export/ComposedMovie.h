#pragma once

#include "export/ExportResolution.h"
#include "media/Composition.h"
#include "media/VideoComposition.h"
#include "model/Edit.h"
#include "model/Recording.h"
#include "render/scene/Renderer.h"
#include "render/timing/SegmentTimeMap.h"
#include "render/timing/ZoomAnimator.h"

#include <memory>

namespace vantro::exporting {

/// The recording's movie with what follows from it and the edit, before anything is drawn.
struct OpenedRecording {
    media::Asset asset;
    media::AssetTrack videoTrack;
    render::SegmentTimeMap timeMap;
    std::shared_ptr<const render::ZoomAnimator> animator; ///< in video pixels

    model::Size videoSize() const { return videoTrack.naturalSize; }
};

/// Opens the movie. Throws VantroError exportFailed, for example "No video track found".
OpenedRecording openRecording(const model::Recording& recording, const model::Edit& edit);

/// The canvas for a base size, pixels. Sizes that no picture can have throw VantroError.
model::Size renderSize(const model::Edit& edit, model::Size baseSize);

/// The segment composition of a recording with a compositor that is ready to draw it.
struct ComposedMovie {
    media::Composition composition;
    media::VideoComposition video;
};

ComposedMovie composeMovie(const model::Recording& recording, const model::Edit& edit,
                           const OpenedRecording& opened, model::Size renderSize, int frameRate,
                           std::unique_ptr<render::Renderer> renderer);

} // namespace vantro::exporting
