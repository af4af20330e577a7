#pragma once

#include "render/scene/CursorImage.h"
#include "render/scene/RoundedRect.h"
#include "render/software/SampleAxis.h"

#include <optional>

namespace vantro::render::software {

/// A rectangle of pixels.
struct Tile {
    PixelSpan columns;
    PixelSpan rows;

    bool isEmpty() const { return columns.isEmpty() || rows.isEmpty(); }
    Tile clippedTo(const Tile& other) const {
        return {columns.clippedTo(other.columns), rows.clippedTo(other.rows)};
    }
};

/// A picture stretched over a part of its target.
struct PicturePlan {
    const media::PixelBuffer* picture =
        nullptr; ///< owned by the frame's parameters or the renderer
    SampleAxis x;
    SampleAxis y;
    Tile touched;                    ///< the target pixels that it may draw
    std::optional<RoundedRect> mask; ///< absent: every pixel of the spans is drawn
};

/// One frame's layers and where they stand; drawn in this order.
///
/// The scene is the canvas before the zoom: backdrop, recording, cursor. With `zoomX` and `zoomY`
/// the output magnifies a window of the scene, else it is the scene. The webcam picture comes on
/// top of the output.
struct FramePlan {
    int width = 0;
    int height = 0;
    bool hasBackdrop = false; ///< else the recording fills the canvas
    PicturePlan recording;
    std::optional<PicturePlan> cursor;
    std::optional<SampleAxis> zoomX;
    std::optional<SampleAxis> zoomY;
    std::optional<PicturePlan> webcam;

    /// Whether the recording stands on the output pixel for pixel, all of it.
    bool recordingIsCopy() const;
    /// The smallest part of `tile` outside of which the output is plain backdrop or, where that is
    /// a copy, plain recording. Even-aligned if the tile is.
    Tile livePart(const Tile& tile) const;
};

/// Nothing when the parameters ask for no drawing.
std::optional<FramePlan> planFrame(const RenderParams& params, const CursorTextures& cursor);

} // namespace vantro::render::software
