#version 450
#extension GL_GOOGLE_include_directive : require
#include "quad_uniforms.glsl"

layout(location = 0) out vec4 result;

void main() {
    result = quad.color;
}
