// Pictures as every quad samples them: a pixel is the average of the picture over a filter's width
// around its place, with the texels at the edges repeated beyond them.

// In texels, for that many texels from pixel to pixel. At the film's own scale one texel up to a
// step of 1.5, which is what the linear sampler does; from 1.75 on the step, so that each texel
// counts for as much as it is covered; in between it grows. On a smaller output it is as wide as the
// film's filter and the averaging of the film's pixels are together.
vec2 filterWidth(vec2 texels) {
    vec2 filmTexels = texels * quad.scale;
    vec2 film = clamp(1.0 + 3.0 * (filmTexels - 1.5), vec2(1.0), max(filmTexels, vec2(1.0)));
    return quad.scale == 1.0
               ? film
               : sqrt(texels * texels - filmTexels * filmTexels + film * film);
}

// A texel's share along one axis of what lies from `begin` to `end`.
float shareOf(int texel, float begin, float end, int texels) {
    float from = texel == 0 ? begin : max(float(texel), begin);
    float to = texel == texels - 1 ? end : min(float(texel + 1), end);
    return max(to - from, 0.0) / (end - begin);
}

// `place` in texture coordinates.
vec4 sampled(sampler2D picture, vec2 place) {
    ivec2 texels = textureSize(picture, 0);
    vec2 width = filterWidth(quad.size * vec2(texels) / quad.rectangle.zw);
    if (max(width.x, width.y) <= 1.0)
        return texture(picture, place);
    vec2 begin = place * vec2(texels) - width * 0.5;
    vec2 end = begin + width;
    ivec2 first = clamp(ivec2(floor(begin)), ivec2(0), texels - 1);
    ivec2 last = clamp(ivec2(ceil(end)) - 1, first, texels - 1);
    vec4 sum = vec4(0.0);
    for (int y = first.y; y <= last.y; ++y) {
        vec4 row = vec4(0.0);
        for (int x = first.x; x <= last.x; ++x)
            row += texelFetch(picture, ivec2(x, y), 0) * shareOf(x, begin.x, end.x, texels.x);
        sum += row * shareOf(y, begin.y, end.y, texels.y);
    }
    return sum;
}
