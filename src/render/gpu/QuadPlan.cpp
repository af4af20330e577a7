#include "render/gpu/QuadPlan.h"

#include "base/Fatal.h"
#include "render/scene/FrameLayout.h"

namespace vantro::render::gpu {
namespace {

/// Canvas pixels, y from the top.
struct TopRect {
    float x = 0;
    float y = 0;
    float width = 0;
    float height = 0;
};

TopRect wholeCanvas(const RenderParams& params) {
    return {0, 0, static_cast<float>(params.canvasWidth), static_cast<float>(params.canvasHeight)};
}

std::array<QuadVertex, 6> quadOver(const TopRect& rect, const RenderParams& params) {
    const auto width = static_cast<float>(params.canvasWidth);
    const auto height = static_cast<float>(params.canvasHeight);
    const float left = 2 * rect.x / width - 1;
    const float right = 2 * (rect.x + rect.width) / width - 1;
    const float top = 1 - 2 * rect.y / height;
    const float bottom = 1 - 2 * (rect.y + rect.height) / height;
    return {QuadVertex{left, top, 0, 0},    QuadVertex{right, top, 1, 0},
            QuadVertex{left, bottom, 0, 1}, QuadVertex{right, top, 1, 0},
            QuadVertex{left, bottom, 0, 1}, QuadVertex{right, bottom, 1, 1}};
}

QuadDraw plainQuad(PipelineKind pipeline, PictureRole picture, const TopRect& rect,
                   const RenderParams& params) {
    QuadDraw draw;
    draw.pipeline = pipeline;
    draw.picture = picture;
    draw.vertices = quadOver(rect, params);
    return draw;
}

QuadDraw pictureQuad(PictureRole picture, const TopRect& rect, const RenderParams& params) {
    QuadDraw draw = plainQuad(PipelineKind::texture, picture, rect, params);
    draw.uniforms.rectangle = {rect.x, rect.y, rect.width, rect.height};
    draw.uniforms.size = {1, 1};
    return draw;
}

/// The quad is a pixel larger than the rectangle on every side, to hold the soft rim.
QuadDraw roundedQuad(PipelineKind pipeline, PictureRole picture, const TopRect& rect, float radius,
                     const RenderParams& params) {
    QuadDraw draw = pictureQuad(picture, rect, params);
    draw.pipeline = pipeline;
    draw.vertices = quadOver({rect.x - 1, rect.y - 1, rect.width + 2, rect.height + 2}, params);
    draw.uniforms.cornerRadius = radius;
    return draw;
}

void addBackground(QuadList& list, const RenderParams& params) {
    if (params.backgroundImage) {
        list.add(pictureQuad(PictureRole::background, wholeCanvas(params), params));
        return;
    }
    const RenderColor color = params.bgColor.value_or(RenderColor{});
    QuadDraw draw =
        plainQuad(PipelineKind::solidColor, PictureRole::none, wholeCanvas(params), params);
    draw.uniforms.color = {color.red, color.green, color.blue, color.alpha};
    list.add(draw);
}

void addRecording(QuadList& list, const RenderParams& params) {
    const auto height = static_cast<float>(params.canvasHeight);
    const TopRect rect{params.insetX, height - params.insetY - params.insetH, params.insetW,
                       params.insetH};
    if (rect.width > 0 && rect.height > 0)
        list.add(roundedQuad(PipelineKind::roundedRect, PictureRole::source, rect,
                             params.cornerRadius, params));
}

void addCursor(QuadList& list, const RenderParams& params, const CursorImage& cursor) {
    if (!params.cursorX || !params.cursorY || !cursor.pixels)
        return;
    const model::Rect place = cursorRect(params, cursor);
    const TopRect rect{static_cast<float>(place.x), static_cast<float>(place.y),
                       static_cast<float>(place.width), static_cast<float>(place.height)};
    if (rect.width > 0 && rect.height > 0)
        list.add(pictureQuad(PictureRole::cursor, rect, params));
}

/// The webcam's picture is cropped to its centred square.
void addWebcam(QuadList& list, const RenderParams& params) {
    if (!params.webcam || !params.webcamRect || !params.webcamDrawRect)
        return;
    const RenderRect& square = *params.webcamRect;
    if (!(square.width > 0 && square.height > 0))
        return;
    const auto canvasHeight = static_cast<float>(params.canvasHeight);
    const TopRect rect{square.x, canvasHeight - square.y - square.height, square.width,
                       square.height};
    QuadDraw draw = roundedQuad(PipelineKind::roundedRectCropped, PictureRole::webcam, rect,
                                params.webcamCornerRadius, params);
    const float aspect =
        static_cast<float>(params.webcam->width()) / static_cast<float>(params.webcam->height());
    if (aspect > 1) {
        draw.uniforms.origin = {(1 - 1 / aspect) / 2, 0};
        draw.uniforms.size = {1 / aspect, 1};
    } else {
        draw.uniforms.origin = {0, (1 - aspect) / 2};
        draw.uniforms.size = {1, aspect};
    }
    list.add(draw);
}

void addZoomSample(QuadList& list, const RenderParams& params, PictureRole picture,
                   const ZoomWindow& window, model::Size pictureSize) {
    QuadDraw draw = plainQuad(PipelineKind::zoomSample, picture, wholeCanvas(params), params);
    draw.uniforms.origin = {static_cast<float>(window.x / pictureSize.width),
                            static_cast<float>(window.y / pictureSize.height)};
    draw.uniforms.size = {static_cast<float>(window.width / pictureSize.width),
                          static_cast<float>(window.height / pictureSize.height)};
    list.add(draw);
}

void addSceneContent(QuadList& list, const RenderParams& params, const CursorImage& cursor) {
    addBackground(list, params);
    list.add(pictureQuad(PictureRole::shadow, wholeCanvas(params), params));
    addRecording(list, params);
    addCursor(list, params, cursor);
}

} // namespace

DrawPath drawPath(const RenderParams& params) {
    const bool zoomed = params.keyframe.isZoomed();
    if (params.hasBackground)
        return zoomed ? DrawPath::scene : DrawPath::direct;
    if (zoomed)
        return DrawPath::zoomWithoutBackground;
    return params.cursorX || params.webcam ? DrawPath::plain : DrawPath::nothing;
}

void QuadList::add(const QuadDraw& draw) {
    base::require(m_count < capacity, "too many quads in one pass");
    m_draws[m_count++] = draw;
}

QuadPlan planQuads(const RenderParams& params, const CursorImage& cursor) {
    QuadPlan plan{.path = drawPath(params), .scene = {}, .output = {}};
    const model::Size canvas{static_cast<double>(params.canvasWidth),
                             static_cast<double>(params.canvasHeight)};
    switch (plan.path) {
    case DrawPath::nothing:
        return plan;
    case DrawPath::plain:
        plan.output.add(pictureQuad(PictureRole::source, wholeCanvas(params), params));
        addCursor(plan.output, params, cursor);
        break;
    case DrawPath::zoomWithoutBackground: {
        const model::Size source{static_cast<double>(params.source->width()),
                                 static_cast<double>(params.source->height())};
        addZoomSample(plan.output, params, PictureRole::source, sourceZoomWindow(params), source);
        addCursor(plan.output, params, cursor);
        break;
    }
    case DrawPath::scene:
        addSceneContent(plan.scene, params, cursor);
        addZoomSample(plan.output, params, PictureRole::scene, sceneZoomWindow(params), canvas);
        break;
    case DrawPath::direct:
        addSceneContent(plan.output, params, cursor);
        break;
    }
    addWebcam(plan.output, params);
    return plan;
}

} // namespace vantro::render::gpu
