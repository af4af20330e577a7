#include "render/scene/FrameLayout.h"

#include <algorithm>
#include <cmath>

namespace vantro::render {
namespace {

/// A webcam picture's margin, corner radius and side as fractions of its square.
constexpr double webcamMargin = 0.08;
constexpr double webcamRounding = 0.27;

/// A window of `extent` pixels shown at `scale` around `centre`, shifted to lie inside.
void placeWindow(double extent, double centre, double scale, double& origin, double& visible) {
    visible = extent / scale;
    origin = std::max(0.0, std::min(extent - visible, centre - visible / 2));
}

model::Size sourceSize(const RenderParams& params) {
    return {static_cast<double>(params.source->width()),
            static_cast<double>(params.source->height())};
}

} // namespace

RecordingInset recordingInset(model::Size canvas, model::Size source,
                              const std::optional<model::BackgroundSettings>& background) {
    if (!background)
        return {{0, 0, canvas.width, canvas.height}, 0};
    const double share = std::clamp(1 - 2 * background->padding, 0.0, 1.0);
    const double availableWidth = share * canvas.width;
    const double availableHeight = share * canvas.height;
    const double ratio = source.width / source.height;
    const bool limitedByWidth = availableWidth < ratio * availableHeight;
    const double width = limitedByWidth ? availableWidth : ratio * availableHeight;
    const double height = limitedByWidth ? availableWidth / ratio : availableHeight;
    return {{(canvas.width - width) / 2, (canvas.height - height) / 2, width, height},
            background->cornerRadius};
}

ZoomWindow sceneZoomWindow(const RenderParams& params) {
    const model::Size source = sourceSize(params);
    const double centreX = params.insetX + params.insetW / source.width * params.keyframe.centerX;
    const double centreY = params.insetY + params.insetH / source.height * params.keyframe.centerY;
    ZoomWindow window;
    placeWindow(params.canvasWidth, centreX, params.keyframe.scale, window.x, window.width);
    placeWindow(params.canvasHeight, centreY, params.keyframe.scale, window.y, window.height);
    return window;
}

ZoomWindow sourceZoomWindow(const RenderParams& params) {
    const model::Size source = sourceSize(params);
    const auto& [scale, centreX, centreY] = params.keyframe;
    ZoomWindow window;
    placeWindow(source.width, centreX, scale, window.x, window.width);
    placeWindow(source.height, centreY, scale, window.y, window.height);
    return window;
}

model::Rect cursorRect(const RenderParams& params, const CursorImage& cursor) {
    const model::Size source = sourceSize(params);
    const double canvasHeight = params.canvasHeight;
    const model::Rect inset =
        params.hasBackground
            ? model::Rect{params.insetX, params.insetY, params.insetW, params.insetH}
            : model::Rect{0, 0, static_cast<double>(params.canvasWidth), canvasHeight};
    const double scaleX = inset.width / source.width;
    const double scaleY = inset.height / source.height;
    const double perUnit = params.cursorScale * scaleX;
    const double width = perUnit * cursor.width;
    const double height = cursor.width > 0 ? perUnit * cursor.height : width;
    const double insetTop = canvasHeight - inset.y - inset.height;
    return {inset.x + params.cursorX.value_or(0) * scaleX - perUnit * cursor.hotSpotX,
            insetTop + params.cursorY.value_or(0) * scaleY - perUnit * cursor.hotSpotY, width,
            height};
}

WebcamPlacement webcamPlacement(model::Size canvas, model::Size image,
                                model::WebcamPosition position, double sizeFraction,
                                double zoomScale) {
    double side = sizeFraction * canvas.width;
    if (zoomScale > ZoomKeyframe::zoomedThreshold)
        side /= std::sqrt(zoomScale);
    const double margin = side * webcamMargin;
    const bool atLeft =
        position == model::WebcamPosition::topLeft || position == model::WebcamPosition::bottomLeft;
    const bool atTop =
        position == model::WebcamPosition::topLeft || position == model::WebcamPosition::topRight;
    const double x = atLeft ? margin : canvas.width - side - margin;
    const double y = atTop ? canvas.height - side - margin : margin;

    const double ratio = image.width / image.height;
    const double drawWidth = ratio > 1 ? side * ratio : side;
    const double drawHeight = ratio > 1 ? side : side / ratio;
    const auto rect = [](double left, double bottom, double width, double height) {
        return RenderRect{static_cast<float>(left), static_cast<float>(bottom),
                          static_cast<float>(width), static_cast<float>(height)};
    };
    return {rect(x, y, side, side),
            rect(x - (drawWidth - side) / 2, y - (drawHeight - side) / 2, drawWidth, drawHeight),
            static_cast<float>(side * webcamRounding)};
}

} // namespace vantro::render
