// Pictures come with their color multiplied by alpha; blending multiplies by alpha itself.
vec4 straightAlpha(vec4 texel) {
    return texel.a > 0.0 ? vec4(texel.rgb / texel.a, texel.a) : vec4(0.0);
}
