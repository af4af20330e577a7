#include "editor/ExportRules.h"

#include "export/GifExporter.h"
#include "export/VideoExporter.h"
#include "model/Canvas.h"
#include "render/timing/SegmentTimeMap.h"

#include <algorithm>
#include <cmath>

namespace vantro::editor {
namespace {

constexpr double askedRate = exporting::VideoExporter::averageBitRate / 8.0; // bytes/s
constexpr double soundRate = exporting::VideoExporter::soundBitRate / 8.0;   // bytes/s
constexpr double movingShare = 4;         // a film's rate to its recording's
constexpr double smallShare = 0.8;        // what "small" leaves of that
constexpr double sizeExponent = 0.75;     // larger pictures take fewer bytes a pixel
constexpr double gifBytesPerPixel = 0.17; // where much moves
constexpr double gifShare = 1.5;          // of the recording's rate, where little does
constexpr double shortestElapsed = 1;     // s
constexpr double smallestFraction = 0.01;

double pixels(model::Size size) {
    return size.width * size.height;
}

model::Size canvasOf(const ExportMeasure& measure) {
    const auto base = measure.isGif ? exporting::gifBaseSize(measure.videoSize)
                                    : exporting::baseSize(measure.resolution, measure.videoSize);
    return model::canvasSize(measure.edit.canvasAspectRatio, base);
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
        rate = std::min(gifBytesPerPixel * exporting::GifExporter::usualFrameRate * pixels(canvas),
                        gifShare * recordedRate);
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
