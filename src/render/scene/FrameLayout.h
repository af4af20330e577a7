#pragma once

#include "model/Background.h"
#include "model/Choices.h"
#include "model/Geometry.h"
#include "render/scene/Renderer.h"

#include <optional>

namespace vantro::render {

/// Where the recording stands on the canvas: canvas pixels, y from the bottom edge.
struct RecordingInset {
    model::Rect rect;
    double cornerRadius = 0;
};

/// Fits a recording of `source` size into the canvas less the background's padding; without a
/// background it fills the canvas. Pure.
RecordingInset recordingInset(model::Size canvas, model::Size source,
                              const std::optional<model::BackgroundSettings>& background);

/// The part of a picture that a zoom shows, in that picture's pixels, top-left origin. It is
/// shifted at the edges, never shrunk, so it always lies inside.
struct ZoomWindow {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

/// The window on a scene of canvas size for a keyframe whose centre is in source pixels.
ZoomWindow sceneZoomWindow(const RenderParams& params);
/// The window on the source itself, for frames without a background.
ZoomWindow sourceZoomWindow(const RenderParams& params);

/// Where the cursor's picture stands, pixels, top-left origin. `params` gives the inset; for frames
/// without a background the inset is the whole frame.
model::Rect cursorRect(const RenderParams& params, const CursorImage& cursor);

/// The webcam's square and the rectangle that its whole picture would cover, both in canvas pixels
/// with y from the bottom.
struct WebcamPlacement {
    RenderRect square;
    RenderRect drawRect;
    float cornerRadius = 0;
};
WebcamPlacement webcamPlacement(model::Size canvas, model::Size image,
                                model::WebcamPosition position, double sizeFraction,
                                double zoomScale);

} // namespace vantro::render
