#version 450

// Turns a planar 4:2:0 picture into an opaque RGB one. A chroma sample stands in the center of its
// 2 x 2 pixels; between samples chroma is bilinear. Filtered by hand: some samplers round to 8 bits
// before the matrix multiplies the error.
layout(set = 0, binding = 0) uniform sampler2D lumaPlane;
layout(set = 0, binding = 1) uniform sampler2D bluePlane;
layout(set = 0, binding = 2) uniform sampler2D redPlane;
layout(push_constant, std430) uniform Conversion {
    float lumaOffset;
    float lumaScale;
    float chromaScale;
    float chromaOffset;
    float redFromRed;
    float greenFromBlue;
    float greenFromRed;
    float blueFromBlue;
} conversion;
layout(location = 0) out vec4 result;

float chroma(sampler2D plane, ivec2 first, ivec2 second, vec2 weight) {
    float top = mix(texelFetch(plane, first, 0).r,
                    texelFetch(plane, ivec2(second.x, first.y), 0).r, weight.x);
    float bottom = mix(texelFetch(plane, ivec2(first.x, second.y), 0).r,
                       texelFetch(plane, second, 0).r, weight.x);
    return mix(top, bottom, weight.y);
}

void main() {
    ivec2 pixel = ivec2(gl_FragCoord.xy);
    vec2 place = gl_FragCoord.xy * 0.5 - 0.5;
    vec2 base = floor(place);
    ivec2 last = textureSize(bluePlane, 0) - 1;
    ivec2 first = clamp(ivec2(base), ivec2(0), last);
    ivec2 second = clamp(ivec2(base) + 1, ivec2(0), last);
    vec2 weight = place - base;

    float luma =
        (texelFetch(lumaPlane, pixel, 0).r - conversion.lumaOffset) * conversion.lumaScale;
    float blue = (chroma(bluePlane, first, second, weight) - conversion.chromaOffset) *
                 conversion.chromaScale;
    float red = (chroma(redPlane, first, second, weight) - conversion.chromaOffset) *
                conversion.chromaScale;
    result = vec4(luma + conversion.redFromRed * red,
                  luma + conversion.greenFromBlue * blue + conversion.greenFromRed * red,
                  luma + conversion.blueFromBlue * blue, 1.0);
}
