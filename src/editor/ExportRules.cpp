#include "editor/ExportRules.h"

#include "model/Canvas.h"
#include "render/timing/SegmentTimeMap.h"

#include <algorithm>
#include <cmath>

namespace vantro::editor {
namespace {

constexpr double askedRate = 20e6 / 8;    // bytes/s, of films
constexpr double soundRate = 128e3 / 8;   // bytes/s
constexpr double movingShare = 4;         // a film's rate to its recording's
constexpr double smallShare = 0.8;        // what "small" leaves of that
constexpr double sizeExponent = 0.75;     // larger pictures take fewer bytes a pixel
constexpr double gifWidth = 640;          // pixels, at most
constexpr double gifFrameRate = 12;       // 1/s
constexpr double gifBytesPerPixel = 0.17; // where much moves
constexpr double gifShare = 1.5;          // of the recording's rate, where little does
constexpr double shortestElapsed = 1;     // s
constexpr double smallestFraction = 0.01;

double pixels(model::Size size) {
    return size.width * size.height;
}

model::Size canvasOf(const ExportMeasure& measure) {
    auto canvas = model::canvasSize(measure.edit.canvasAspectRatio,
                                    exporting::baseSize(measure.resolution, measure.videoSize));
    if (measure.isGif) {
        canvas = model::canvasSize(measure.edit.canvasAspectRatio, measure.videoSize);
        const double scale = std::min(1.0, gifWidth / canvas.width);
        canvas = {canvas.width * scale, canvas.height * scale};
    }
    return canvas;
}

} // namespace

std::uint64_t estimatedBytes(const ExportMeasure& measure) {
    if (!(measure.sourceDuration > 0) || !(pixels(measure.videoSize) > 0))
        return 0;
    const render::SegmentTimeMap map(measure.edit.segments, measure.sourceDuration);
    const double recordedRate = static_cast<double>(measure.sourceBytes) / measure.sourceDuration;
    const auto canvas = canvasOf(measure);
    double rate = 0;
    if (measure.isGif) {
        rate = std::min(gifBytesPerPixel * gifFrameRate * pixels(canvas), gifShare * recordedRate);
    } else {
        const double larger = std::pow(pixels(canvas) / pixels(measure.videoSize), sizeExponent);
        rate = std::min(movingShare * larger * recordedRate, askedRate);
        if (measure.quality == media::VideoQuality::small)
            rate *= smallShare;
        if (measure.hasSound)
            rate += soundRate;
    }
    return static_cast<std::uint64_t>(rate * map.totalDuration());
}

std::optional<double> secondsLeft(double fraction, double elapsed) {
    if (!(fraction >= smallestFraction) || !(elapsed >= shortestElapsed))
        return {};
    return elapsed * (1 - std::min(fraction, 1.0)) / fraction;
}

} // namespace vantro::editor
