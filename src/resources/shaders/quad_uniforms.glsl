// The block that every quad's fragment stage is given. Pixels are the canvas's, y from the
// top, which is how gl_FragCoord counts.
layout(push_constant, std430) uniform QuadUniforms {
    vec4 rectangle;     // x, y, width, height in canvas pixels
    float cornerRadius; // canvas pixels
    float scale;        // output pixels a pixel of the film
    vec2 origin;        // where sampling starts, texture coordinates
    vec2 size;          // how far sampling reaches, texture coordinates
} quad;

// Where in the rectangle this pixel's center lies, 0 to 1 in both directions. Taken from the pixel
// and not from the vertices: rasterizers snap vertices to fractions of a pixel, which would move a
// picture that stands between pixels.
vec2 placeInRectangle() {
    return (gl_FragCoord.xy - quad.rectangle.xy) / quad.rectangle.zw;
}
