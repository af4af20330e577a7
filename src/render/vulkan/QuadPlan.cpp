#include "render/vulkan/QuadPlan.h"

#include "base/Fatal.h"

namespace vantro::render::vulkan {
namespace {

std::array<QuadVertex, 6> quadOver(const PixelRect& rect, PixelSize canvas) {
    const auto left = static_cast<float>(2 * rect.x / canvas.width - 1);
    const auto right = static_cast<float>(2 * (rect.x + rect.width) / canvas.width - 1);
    const auto top = static_cast<float>(1 - 2 * rect.y / canvas.height);
    const auto bottom = static_cast<float>(1 - 2 * (rect.y + rect.height) / canvas.height);
    return {QuadVertex{left, top, 0, 0},    QuadVertex{right, top, 1, 0},
            QuadVertex{left, bottom, 0, 1}, QuadVertex{right, top, 1, 0},
            QuadVertex{left, bottom, 0, 1}, QuadVertex{right, bottom, 1, 1}};
}

QuadDraw quad(PipelineKind pipeline, PictureRole picture, const PixelRect& place,
              PixelSize canvas) {
    QuadDraw draw;
    draw.pipeline = pipeline;
    draw.picture = picture;
    draw.vertices = quadOver(place, canvas);
    draw.uniforms.rectangle = {static_cast<float>(place.x), static_cast<float>(place.y),
                               static_cast<float>(place.width), static_cast<float>(place.height)};
    draw.uniforms.size = {1, 1};
    return draw;
}

QuadDraw wholeCanvas(PipelineKind pipeline, PictureRole picture, PixelSize canvas) {
    return quad(pipeline, picture, PixelRect::whole(canvas), canvas);
}

/// Samples a part of a picture of that size.
void setPart(QuadDraw& draw, const PixelRect& part, PixelSize picture) {
    draw.uniforms.origin = {static_cast<float>(part.x / picture.width),
                            static_cast<float>(part.y / picture.height)};
    draw.uniforms.size = {static_cast<float>(part.width / picture.width),
                          static_cast<float>(part.height / picture.height)};
}

PixelSize sizeOf(const PictureLayer& layer) {
    return {layer.picture->width(), layer.picture->height()};
}

/// A layer with soft rounded corners, whose rim reaches a pixel beyond its place.
QuadDraw roundedQuad(PipelineKind pipeline, PictureRole picture, const PictureLayer& layer,
                     PixelSize canvas) {
    const PixelRect& place = layer.place;
    QuadDraw draw = quad(pipeline, picture, place, canvas);
    draw.vertices = quadOver({place.x - 1, place.y - 1, place.width + 2, place.height + 2}, canvas);
    draw.uniforms.cornerRadius = static_cast<float>(layer.cornerRadius);
    setPart(draw, layer.part, sizeOf(layer));
    return draw;
}

void addBackdrop(QuadList& list, const Scene& scene) {
    const Scene::Background& background = *scene.background;
    if (background.picture) {
        list.add(wholeCanvas(PipelineKind::texture, PictureRole::background, scene.canvas));
    } else {
        QuadDraw draw = wholeCanvas(PipelineKind::solidColor, PictureRole::none, scene.canvas);
        draw.uniforms.color = {static_cast<float>(background.color.red),
                               static_cast<float>(background.color.green),
                               static_cast<float>(background.color.blue), 1};
        list.add(draw);
    }
    list.add(wholeCanvas(PipelineKind::texture, PictureRole::shadow, scene.canvas));
}

void addRecording(QuadList& list, const Scene& scene) {
    if (scene.background) {
        if (!scene.recording.place.isEmpty())
            list.add(roundedQuad(PipelineKind::roundedRect, PictureRole::recording, scene.recording,
                                 scene.canvas));
    } else {
        QuadDraw draw = wholeCanvas(PipelineKind::zoomSample, PictureRole::recording, scene.canvas);
        setPart(draw, scene.recording.part, sizeOf(scene.recording));
        list.add(draw);
    }
}

/// The backdrop by itself where the output shows a part of it only.
void addBackground(QuadPlan& plan, const Scene& scene) {
    const PixelRect& shown = scene.background->shown;
    if (shown == PixelRect::whole(scene.canvas)) {
        addBackdrop(plan.output, scene);
        return;
    }
    addBackdrop(plan.backdrop, scene);
    QuadDraw draw = wholeCanvas(PipelineKind::zoomSample, PictureRole::backdrop, scene.canvas);
    setPart(draw, shown, scene.canvas);
    plan.output.add(draw);
}

} // namespace

void QuadList::add(const QuadDraw& draw) {
    base::require(m_count < capacity, "too many quads in one pass");
    m_draws[m_count++] = draw;
}

void QuadList::setScale(double scale) {
    for (QuadDraw& draw : std::span(m_draws).first(m_count))
        if (draw.picture != PictureRole::backdrop && draw.picture != PictureRole::shadow)
            draw.uniforms.scale = static_cast<float>(scale);
}

QuadPlan planQuads(const Scene& scene) {
    QuadPlan plan;
    if (scene.background)
        addBackground(plan, scene);
    addRecording(plan.output, scene);
    if (scene.cursor)
        plan.output.add(
            quad(PipelineKind::texture, PictureRole::cursor, scene.cursor->place, scene.canvas));
    if (scene.webcam)
        plan.output.add(roundedQuad(PipelineKind::roundedRectCropped, PictureRole::webcam,
                                    *scene.webcam, scene.canvas));
    plan.backdrop.setScale(scene.scale);
    plan.output.setScale(scene.scale);
    return plan;
}

} // namespace vantro::render::vulkan
