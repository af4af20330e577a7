#version 450
#extension GL_GOOGLE_include_directive : require
#include "quad_uniforms.glsl"
#include "sampling.glsl"
#include "straight_alpha.glsl"

layout(set = 0, binding = 0) uniform sampler2D picture;
layout(location = 0) out vec4 result;

void main() {
    result = straightAlpha(sampled(picture, placeInRectangle()));
}
