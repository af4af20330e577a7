#pragma once

#include "render/scene/RoundedRect.h"
#include "render/scene/Scene.h"
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
    const media::PixelBuffer* picture = nullptr; ///< owned by the scene
    SampleAxis x;
    SampleAxis y;
    Tile touched;                    ///< the target pixels that it may draw
    std::optional<RoundedRect> mask; ///< absent: every pixel of the spans is drawn
};

/// How the pixels of one scene come about.
struct FramePlan {
    int width = 0;
    int height = 0;
    bool hasBackdrop = false;            ///< else the recording fills the canvas
    std::optional<SampleAxis> backdropX; ///< where the output shows a part of it, magnified
    std::optional<SampleAxis> backdropY;
    PicturePlan recording;
    std::optional<PicturePlan> cursor;
    std::optional<PicturePlan> webcam;

    /// Whether the recording stands on the output pixel for pixel, all of it.
    bool recordingIsCopy() const;
    /// The smallest part of `tile` outside of which the output is plain backdrop or, where that is
    /// a copy, plain recording. Even-aligned if the tile is.
    Tile livePart(const Tile& tile) const;
};

FramePlan planFrame(const Scene& scene);

} // namespace vantro::render::software
