#pragma once

#include "render/scene/PixelSpan.h"

#include <algorithm>
#include <cmath>

namespace vantro::render::software {

/// One axis of a picture that is drawn stretched: which place in the picture an output pixel shows.
/// Pixel i's center shows start + (i + 0.5) × step, where texel k spans k to k + 1.
struct SampleAxis {
    double start = 0;
    double step = 1;
    int texels = 1;

    /// The part [from, from + extent) of the texture over [at, at + length) of the output.
    static SampleAxis stretched(int texels, double from, double extent, double at, double length) {
        const double step = length > 0 ? extent / length : 0;
        return {from - at * step, step, texels};
    }

    /// The two texels whose mix an output pixel shows: clamped to the edge, the weight belongs to
    /// the one after `first` and is 0 where there is none.
    struct Tap {
        int first = 0;
        double weight = 0;
    };
    Tap tap(int pixel) const {
        const double place = start + (pixel + 0.5) * step - 0.5;
        const double whole = std::floor(place);
        if (!(whole >= 0))
            return {0, 0};
        if (whole >= texels - 1)
            return {texels - 1, 0};
        return {static_cast<int>(whole), place - whole};
    }
    /// The texels that a span of output pixels is mixed from.
    PixelSpan taps(PixelSpan pixels) const {
        const Tap last = tap(pixels.end - 1);
        return {tap(pixels.begin).first, std::min(last.first + 2, texels)};
    }
    /// Each pixel is one texel as it is.
    bool isCopy() const { return step == 1 && start == std::floor(start); }
};

} // namespace vantro::render::software
