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

/// A part of a picture stretched over a place on the output.
struct PictureLayer {
    ImagePointer picture;
    PixelRect part;          ///< of the picture
    PixelRect place;         ///< on the output, beyond which it may reach
    double cornerRadius = 0; ///< output pixels
    bool operator==(const PictureLayer&) const = default;
};

/// What one output frame consists of, all laid out: renderers only draw it, in the order of the
/// members. Equal scenes are equal pixels. A value.
struct Scene {
    /// What lies under the recording: a picture stretched over the canvas, else the color, and on
    /// it the recording's shadow. A camera that is closer shows a part of it, magnified.
    struct Background {
        model::BackgroundColor color;
        ImagePointer picture; ///< premultiplied bgra, or none
        ShadowShape shadow;
        PixelRect shown; ///< of the canvas
        bool operator==(const Background&) const = default;
    };

    PixelSize canvas;                     ///< the size of the output
    double scale = 1;                     ///< output pixels a pixel of the film
    std::optional<Background> background; ///< without one the recording covers the output
    PictureLayer recording;               ///< bgra or i420, taken as opaque
    std::optional<PictureLayer> cursor;   ///< premultiplied bgra
    std::optional<PictureLayer> webcam;   ///< premultiplied bgra

    bool operator==(const Scene&) const = default;

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

/// Where the recording stands on the output: what makeScene lays out, for pointing at it.
struct RecordingLayout {
    PixelSize recording; ///< its picture's size
    PixelRect framed;    ///< its place on the canvas
    PixelRect shown;     ///< the part of the canvas that the camera sees
    PixelRect place;     ///< its place on the output, beyond which it may reach

    PixelPoint onOutput(PixelPoint inRecording) const;
    PixelPoint inRecording(PixelPoint onOutput) const;
};

/// `canvas` is the output's size, `camera` in the recording's pixels. Pure.
RecordingLayout layOut(PixelSize canvas, PixelSize recording,
                       const model::BackgroundSettings& background, const ZoomKeyframe& camera);

/// The one place that decides where everything stands. `canvas` is the output's size: the film's,
/// times the content's scale. Pure.
Scene makeScene(PixelSize canvas, const SceneContent& content);

} // namespace vantro::render
