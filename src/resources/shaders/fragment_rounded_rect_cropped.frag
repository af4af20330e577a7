#version 450
#extension GL_GOOGLE_include_directive : require
#include "quad_uniforms.glsl"
#include "sampling.glsl"
#include "straight_alpha.glsl"
#include "rounded_mask.glsl"

layout(set = 0, binding = 0) uniform sampler2D picture;
layout(location = 0) out vec4 result;

void main() {
    vec4 texel = straightAlpha(sampled(picture, quad.origin + placeInRectangle() * quad.size));
    result = vec4(texel.rgb, texel.a * roundedRectangleCoverage());
}
