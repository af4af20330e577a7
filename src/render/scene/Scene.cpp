#include "render/scene/Scene.h"

#include <algorithm>
#include <cmath>

namespace vantro::render {
namespace {

/// A webcam picture's margin and corner radius as fractions of its square.
constexpr double webcamMargin = 0.08;
constexpr double webcamRounding = 0.27;

PixelRect wholeOf(const media::PixelBuffer& picture) {
    return PixelRect::whole({picture.width(), picture.height()});
}

/// Fits the recording into the canvas less the background's padding.
PictureLayer framedRecording(const PixelRect& canvas, const ImagePointer& picture,
                             const model::BackgroundSettings& background, double scale) {
    const PixelRect part = wholeOf(*picture);
    const double share = std::clamp(1 - 2 * background.padding, 0.0, 1.0);
    const double availableWidth = share * canvas.width;
    const double availableHeight = share * canvas.height;
    const double ratio = part.width / part.height;
    const bool limitedByWidth = availableWidth < ratio * availableHeight;
    const double width = limitedByWidth ? availableWidth : ratio * availableHeight;
    const double height = limitedByWidth ? availableWidth / ratio : availableHeight;
    return {picture,
            part,
            {(canvas.width - width) / 2, (canvas.height - height) / 2, width, height},
            background.cornerRadius * scale};
}

/// The part of `whole` that is seen when it is magnified around a point. At the edges it is
/// shifted, never shrunk, so it always lies inside.
PixelRect magnified(const PixelRect& whole, PixelPoint center, double scale) {
    const double width = whole.width / scale;
    const double height = whole.height / scale;
    return {std::max(0.0, std::min(whole.width - width, center.x - width / 2)),
            std::max(0.0, std::min(whole.height - height, center.y - height / 2)), width, height};
}

Scene::Background backgroundLayer(PixelSize canvas, const PictureLayer& recording,
                                  const SceneContent& content) {
    Scene::Background layer;
    if (const auto* color = std::get_if<model::BackgroundColor>(&content.background->type))
        layer.color = *color;
    layer.picture = content.backgroundPicture;
    layer.shadow = {canvas, recording.place, recording.cornerRadius, content.scale};
    layer.shown = PixelRect::whole(canvas);
    return layer;
}

/// Moves a layer from its place on the canvas to that on an output which shows `window` of it.
void show(const PixelRect& window, const PixelRect& canvas, PictureLayer& layer) {
    const double scale = canvas.width / window.width;
    PixelRect& place = layer.place;
    place = {(place.x - window.x) * scale, (place.y - window.y) * scale, place.width * scale,
             place.height * scale};
    layer.cornerRadius *= scale;
}

/// Where a point of the recording's picture stands.
PixelPoint onCanvas(PixelPoint point, const PictureLayer& recording) {
    const PixelRect picture = wholeOf(*recording.picture);
    return {recording.place.x + recording.place.width / picture.width * point.x,
            recording.place.y + recording.place.height / picture.height * point.y};
}

/// The cursor with its hot spot on the pointer's place. It is scaled with the recording's width,
/// and not magnified where the output is a part of the recording.
std::optional<PictureLayer> cursorLayer(const SceneContent& content,
                                        const PictureLayer& recording) {
    if (!content.pointer || content.cursor == nullptr)
        return {};
    const CursorImage& image = content.cursor->image();
    const PixelPoint tip = onCanvas(*content.pointer, recording);
    const double perUnit =
        content.cursorScale * (recording.place.width / content.recording->width());
    const PixelRect place{tip.x - perUnit * image.hotSpotX, tip.y - perUnit * image.hotSpotY,
                          perUnit * image.width, perUnit * image.height};
    if (place.isEmpty())
        return {};
    const ImagePointer& texture = content.cursor->textureFor(place.width);
    return PictureLayer{texture, wholeOf(*texture), place};
}

/// The middle square of the webcam's picture in its corner, smaller while the recording is zoomed.
std::optional<PictureLayer> webcamLayer(const SceneContent& content, const PixelRect& canvas) {
    using enum model::WebcamPosition;
    if (!content.webcam)
        return {};
    double side = content.webcamSize * canvas.width;
    if (content.camera.isZoomed())
        side /= std::sqrt(content.camera.scale);
    if (!(side > 0))
        return {};
    const double margin = side * webcamMargin;
    const bool atLeft = content.webcamPosition == topLeft || content.webcamPosition == bottomLeft;
    const bool atTop = content.webcamPosition == topLeft || content.webcamPosition == topRight;
    const PixelRect place{atLeft ? margin : canvas.width - side - margin,
                          atTop ? margin : canvas.height - side - margin, side, side};

    const PixelRect whole = wholeOf(*content.webcam);
    const double crop = std::min(whole.width, whole.height);
    return PictureLayer{content.webcam,
                        {(whole.width - crop) / 2, (whole.height - crop) / 2, crop, crop},
                        place,
                        side * webcamRounding};
}

} // namespace

bool Scene::isRecordingAlone() const {
    return !background && !cursor && !webcam && recording.part == wholeOf(*recording.picture);
}

Scene makeScene(PixelSize canvasSize, const SceneContent& content) {
    const PixelRect canvas = PixelRect::whole(canvasSize);
    const PixelPoint center{content.camera.centerX, content.camera.centerY};
    Scene scene;
    scene.canvas = canvasSize;
    scene.scale = content.scale;
    if (content.background != nullptr) {
        scene.recording =
            framedRecording(canvas, content.recording, *content.background, content.scale);
        scene.background = backgroundLayer(canvasSize, scene.recording, content);
        if (content.camera.isZoomed()) {
            const PixelPoint middle = onCanvas(center, scene.recording);
            scene.background->shown = magnified(canvas, middle, content.camera.scale);
            show(scene.background->shown, canvas, scene.recording);
        }
    } else {
        const PixelRect whole = wholeOf(*content.recording);
        scene.recording = {
            content.recording,
            content.camera.isZoomed() ? magnified(whole, center, content.camera.scale) : whole,
            canvas};
    }
    scene.cursor = cursorLayer(content, scene.recording);
    scene.webcam = webcamLayer(content, canvas);
    return scene;
}

} // namespace vantro::render
