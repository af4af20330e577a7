#version 450
#extension GL_GOOGLE_include_directive : require
#include "quad_uniforms.glsl"
#include "sampling.glsl"

layout(set = 0, binding = 0) uniform sampler2D picture;
layout(location = 0) in vec2 place;
layout(location = 0) out vec4 result;

void main() {
    result = sampled(picture, quad.origin + place * quad.size);
}
