// How much of this pixel the rounded rectangle covers: half at its outline, falling off over one
// pixel across it.
float roundedRectangleCoverage() {
    vec2 halfSize = quad.rectangle.zw * 0.5;
    float radius = clamp(quad.cornerRadius, 0.0, min(halfSize.x, halfSize.y));
    vec2 fromCenter = gl_FragCoord.xy - (quad.rectangle.xy + halfSize);
    vec2 beyond = abs(fromCenter) - halfSize + radius;
    float signedDistance =
        min(max(beyond.x, beyond.y), 0.0) + length(max(beyond, vec2(0.0))) - radius;
    return clamp(0.5 - signedDistance, 0.0, 1.0);
}
