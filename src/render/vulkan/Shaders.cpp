#include "render/vulkan/Shaders.h"

namespace vantro::render::vulkan::shaders {
namespace {

// Made at build time, one array for each program.
#include "compute_convert_to_i420.h"
#include "fragment_convert_i420.h"
#include "fragment_rounded_rect.h"
#include "fragment_rounded_rect_cropped.h"
#include "fragment_texture.h"
#include "fragment_zoom_sample.h"
#include "vertex_passthrough.h"

} // namespace

Program vertexPassthrough() {
    return vertex_passthrough;
}
Program fragmentTexture() {
    return fragment_texture;
}
Program fragmentRoundedRect() {
    return fragment_rounded_rect;
}
Program fragmentRoundedRectCropped() {
    return fragment_rounded_rect_cropped;
}
Program fragmentZoomSample() {
    return fragment_zoom_sample;
}
Program fragmentConvertI420() {
    return fragment_convert_i420;
}
Program computeConvertToI420() {
    return compute_convert_to_i420;
}

} // namespace vantro::render::vulkan::shaders
