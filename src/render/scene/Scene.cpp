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
PixelRect framed(const PixelRect& canvas, const PixelRect& recording, double padding) {
    const double share = std::clamp(1 - 2 * padding, 0.0, 1.0);
    const double availableWidth = share * canvas.width;
    const double availableHeight = share * canvas.height;
    const double ratio = recording.width / recording.height;
    const bool limitedByWidth = availableWidth < ratio * availableHeight;
    const double width = limitedByWidth ? availableWidth : ratio * availableHeight;
    const double height = limitedByWidth ? availableWidth / ratio : availableHeight;
    return {(canvas.width - width) / 2, (canvas.height - height) / 2, width, height};
}

/// The part of `whole` that is seen when it is magnified around a point. At the edges it is
/// shifted, never shrunk, so it always lies inside.
PixelRect magnified(const PixelRect& whole, PixelPoint center, double scale) {
    const double width = whole.width / scale;
    const double height = whole.height / scale;
    return {std::max(0.0, std::min(whole.width - width, center.x - width / 2)),
            std::max(0.0, std::min(whole.height - height, center.y - height / 2)), width, height};
}

Scene::Background backgroundLayer(PixelSize canvas, const RecordingLayout& layout,
                                  const SceneContent& content) {
    Scene::Background layer;
    if (const auto* color = std::get_if<model::BackgroundColor>(&content.background->type))
        layer.color = *color;
    layer.picture = content.backgroundPicture;
    layer.shadow = {canvas, layout.framed, content.background->cornerRadius * content.scale,
                    content.scale};
    layer.shown = layout.shown;
    return layer;
}

/// Where a point of a picture stands that is stretched over a place.
PixelPoint onPlace(PixelPoint point, const PixelRect& picture, const PixelRect& place) {
    return {place.x + place.width / picture.width * point.x,
            place.y + place.height / picture.height * point.y};
}

/// The cursor with its hot spot on the pointer's place. It is scaled with the recording's width,
/// and not magnified where the output is a part of the recording.
std::optional<PictureLayer> cursorLayer(const SceneContent& content,
                                        const PictureLayer& recording) {
    if (!content.pointer || content.cursor == nullptr)
        return {};
    const CursorImage& image = content.cursor->image();
    const PixelPoint tip = onPlace(*content.pointer, wholeOf(*recording.picture), recording.place);
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

PixelPoint RecordingLayout::onOutput(PixelPoint inRecording) const {
    return onPlace(inRecording, PixelRect::whole(recording), place);
}

PixelPoint RecordingLayout::inRecording(PixelPoint onOutput) const {
    return {(onOutput.x - place.x) / place.width * recording.width,
            (onOutput.y - place.y) / place.height * recording.height};
}

RecordingLayout layOut(PixelSize canvasSize, PixelSize recording,
                       const model::BackgroundSettings& background, const ZoomKeyframe& camera) {
    const PixelRect canvas = PixelRect::whole(canvasSize);
    const PixelRect picture = PixelRect::whole(recording);
    const PixelRect place = framed(canvas, picture, background.padding);
    RecordingLayout layout{recording, place, canvas, place};
    if (camera.isZoomed()) {
        const auto middle = onPlace({camera.centerX, camera.centerY}, picture, place);
        const PixelRect& shown = layout.shown = magnified(canvas, middle, camera.scale);
        const double scale = canvas.width / shown.width;
        layout.place = {(place.x - shown.x) * scale, (place.y - shown.y) * scale,
                        place.width * scale, place.height * scale};
    }
    return layout;
}

Scene makeScene(PixelSize canvasSize, const SceneContent& content) {
    const PixelRect canvas = PixelRect::whole(canvasSize);
    const PixelPoint center{content.camera.centerX, content.camera.centerY};
    Scene scene;
    scene.canvas = canvasSize;
    scene.scale = content.scale;
    if (content.background != nullptr) {
        const auto layout =
            layOut(canvasSize, {content.recording->width(), content.recording->height()},
                   *content.background, content.camera);
        scene.background = backgroundLayer(canvasSize, layout, content);
        scene.recording = {content.recording, wholeOf(*content.recording), layout.place,
                           scene.background->shadow.cornerRadius *
                               (canvas.width / layout.shown.width)};
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
