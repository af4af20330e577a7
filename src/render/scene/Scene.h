#pragma once

#include "media/values/PixelBuffer.h"
#include "model/Background.h"
#include "model/Choices.h"
#include "render/scene/CursorTextures.h"
#include "render/scene/PixelRect.h"
#include "render/scene/ShadowImage.h"
#include "render/timing/ZoomAnimator.h"

#include <optional>

namespace vantro::render {

/// A part of a picture stretched over a place on the canvas.
struct PictureLayer {
    ImagePointer picture;
    PixelRect part;          ///< of the picture
    PixelRect place;         ///< on the canvas
    double cornerRadius = 0; ///< canvas pixels
    bool operator==(const PictureLayer&) const = default;
};

/// What one output frame consists of, all laid out: renderers only draw it, in the order of the
/// members. Equal scenes are equal pixels. A value.
struct Scene {
    /// What lies under the recording: a picture stretched over the canvas, else the color.
    struct Background {
        model::BackgroundColor color;
        ImagePointer picture; ///< premultiplied bgra, or none
        bool operator==(const Background&) const = default;
    };

    PixelSize canvas; ///< the size of the output
    double scale = 1; ///< output pixels a canvas pixel of the film
    /// With one, the recording throws its shadow on it; without, the recording covers the canvas.
    std::optional<Background> background;
    PictureLayer recording;             ///< bgra or i420, taken as opaque
    std::optional<PictureLayer> cursor; ///< premultiplied bgra
    /// The part of the canvas that the output shows, magnified. All above it is magnified with it,
    /// what follows is not.
    std::optional<PixelRect> zoom;
    std::optional<PictureLayer> webcam; ///< premultiplied bgra

    bool operator==(const Scene&) const = default;

    /// The recording's shadow; meant for scenes with a background.
    ShadowShape shadow() const { return {canvas, recording.place, recording.cornerRadius, scale}; }
    /// Whether the output is the recording's picture and nothing else, in the canvas's size.
    bool isRecordingAlone() const;
};

/// What a scene is made of, before it is laid out.
struct SceneContent {
    ImagePointer recording;                                ///< never none
    ZoomKeyframe camera;                                   ///< the center in the recording's pixels
    const model::BackgroundSettings* background = nullptr; ///< none: nothing around the recording
    ImagePointer backgroundPicture;                        ///< wins over the settings' color
    std::optional<PixelPoint> pointer;                     ///< in the recording's pixels
    double cursorScale = 1;                                ///< 0 hides the pointer
    const CursorTextures* cursor = nullptr;                ///< needed where there is a pointer
    ImagePointer webcam;
    model::WebcamPosition webcamPosition = model::WebcamPosition::bottomRight;
    double webcamSize = 0; ///< the square's side as a fraction of the canvas width
    /// Below 1 for a smaller picture of the same film: what the edit measures in pixels is
    /// multiplied by it.
    double scale = 1;
};

/// The one place that decides where everything stands. `canvas` is the output's size: the film's,
/// times the content's scale. Pure.
Scene makeScene(PixelSize canvas, const SceneContent& content);

} // namespace vantro::render
