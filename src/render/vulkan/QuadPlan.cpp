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

void addBackdrop(QuadList& list, const Scene::Background& background, PixelSize canvas) {
    QuadDraw draw = wholeCanvas(PipelineKind::zoomSample, PictureRole::backdrop, canvas);
    setPart(draw, background.shown, canvas);
    list.add(draw);
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

} // namespace

void QuadList::add(const QuadDraw& draw) {
    base::require(m_count < capacity, "too many quads in one pass");
    m_draws[m_count++] = draw;
}

void QuadList::setScale(double scale) {
    for (QuadDraw& draw : std::span(m_draws).first(m_count))
        if (draw.picture != PictureRole::backdrop)
            draw.uniforms.scale = static_cast<float>(scale);
}

QuadList planQuads(const Scene& scene) {
    QuadList list;
    if (scene.background)
        addBackdrop(list, *scene.background, scene.canvas);
    addRecording(list, scene);
    if (scene.cursor)
        list.add(
            quad(PipelineKind::texture, PictureRole::cursor, scene.cursor->place, scene.canvas));
    if (scene.webcam)
        list.add(roundedQuad(PipelineKind::roundedRectCropped, PictureRole::webcam, *scene.webcam,
                             scene.canvas));
    list.setScale(scene.scale);
    return list;
}

} // namespace vantro::render::vulkan
