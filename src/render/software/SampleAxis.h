#pragma once

#include "media/color/AveragedRows.h"
#include "render/scene/PixelSpan.h"

#include <algorithm>
#include <cmath>

namespace vantro::render::software {

/// One axis of a picture that is drawn stretched: which place in the picture an output pixel shows.
/// Pixel i's center shows start + (i + 0.5) × step, where texel k spans k to k + 1.
///
/// A pixel is the average of the picture over a filter's width around that place, with the texels
/// at the edges repeated beyond them. A shader computes the same.
struct SampleAxis {
    double start = 0;
    double step = 1;
    int texels = 1;
    double width = 1; ///< of the filter, texels; at 1 the average is a linear mix of two

    /// The part [from, from + extent) of the texture over [at, at + length) of an output at `scale`
    /// of the film.
    static SampleAxis stretched(int texels, double from, double extent, double at, double length,
                                double scale) {
        const double step = length > 0 ? extent / length : 0;
        return {from - at * step, step, texels, filterWidth(step, scale)};
    }
    bool averages() const { return width > 1; }

    /// At the film's own scale a linear mix up to a step of 1.5, and from 1.75 on the step, so that
    /// each texel counts for as much as it is covered. In between it grows, so that a moving camera
    /// passes from one to the other unseen. On a smaller output it is as wide as the film's filter
    /// and the averaging of the film's pixels are together (the variances of boxes add up).
    static double filterWidth(double step, double scale) {
        const double filmStep = step * scale;
        const double film = std::clamp(1 + 3 * (filmStep - 1.5), 1.0, std::max(filmStep, 1.0));
        return scale == 1 ? film : std::sqrt(step * step - filmStep * filmStep + film * film);
    }

    media::color::AveragedAxis averaged() const { return {start, step, width, texels}; }

    /// The two texels whose mix an output pixel shows: clamped to the edge, the weight belongs to
    /// the one after `first` and is 0 where there is none. For axes that do not average.
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
    /// The texels that a span of output pixels is made from.
    PixelSpan taps(PixelSpan pixels) const {
        const int last = pixels.end - 1;
        if (averages())
            return {averaged().first(pixels.begin), averaged().end(last)};
        return {tap(pixels.begin).first, std::min(tap(last).first + 2, texels)};
    }
    /// Each pixel is one texel as it is.
    bool isCopy() const { return step == 1 && !averages() && start == std::floor(start); }
};

} // namespace vantro::render::software
