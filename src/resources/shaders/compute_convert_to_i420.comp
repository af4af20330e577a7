#version 450

// Turns the finished picture into planar 4:2:0, BT.709 limited range, chroma averaged over 2 x 2
// pixels. One invocation makes 8 x 2 pixels, so that it stores whole words: four words of luma and
// one of each chroma.
layout(local_size_x = 8, local_size_y = 8) in;
layout(set = 0, binding = 0) uniform sampler2D picture;
layout(set = 0, binding = 1, std430) writeonly buffer Planes {
    uint words[];
} planes;
layout(push_constant, std430) uniform Layout {
    ivec2 size;         // pixels
    uint lumaStride;    // all in words of four samples
    uint chromaStride;
    uint blueOffset;
    uint redOffset;
} planeLayout;

uint lumaOf(vec3 color) {
    return uint(16.0 + 219.0 * dot(color, vec3(0.2126, 0.7152, 0.0722)) + 0.5);
}

uint blueOf(vec3 color) {
    return uint(128.0 + 224.0 * dot(color, vec3(-0.2126, -0.7152, 0.9278)) / 1.8556 + 0.5);
}

uint redOf(vec3 color) {
    return uint(128.0 + 224.0 * dot(color, vec3(0.7874, -0.7152, -0.0722)) / 1.5748 + 0.5);
}

vec3 colorAt(ivec2 pixel) {
    return texelFetch(picture, min(pixel, planeLayout.size - 1), 0).rgb;
}

void main() {
    ivec2 corner = ivec2(gl_GlobalInvocationID.xy) * ivec2(8, 2);
    if (corner.x >= planeLayout.size.x || corner.y >= planeLayout.size.y)
        return;
    uvec4 luma = uvec4(0); // the upper row's two words, then the lower row's
    uint blue = 0;
    uint red = 0;
    for (int pair = 0; pair < 4; ++pair) {
        vec3 sum = vec3(0.0);
        for (int i = 0; i < 4; ++i) {
            int x = pair * 2 + (i & 1);
            int y = i >> 1;
            vec3 color = colorAt(corner + ivec2(x, y));
            sum += color;
            luma[y * 2 + (x >> 2)] |= lumaOf(color) << ((x & 3) * 8);
        }
        blue |= blueOf(sum * 0.25) << (pair * 8);
        red |= redOf(sum * 0.25) << (pair * 8);
    }
    uint upper = uint(corner.y) * planeLayout.lumaStride + uint(corner.x / 4);
    planes.words[upper] = luma.x;
    planes.words[upper + 1] = luma.y;
    if (corner.y + 1 < planeLayout.size.y) {
        uint lower = upper + planeLayout.lumaStride;
        planes.words[lower] = luma.z;
        planes.words[lower + 1] = luma.w;
    }
    uint chromaWord = uint(corner.y / 2) * planeLayout.chromaStride + uint(corner.x / 8);
    planes.words[planeLayout.blueOffset + chromaWord] = blue;
    planes.words[planeLayout.redOffset + chromaWord] = red;
}
