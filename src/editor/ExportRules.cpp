#include "editor/ExportRules.h"

#include "export/GifExporter.h"
#include "export/VideoExporter.h"
#include "model/Canvas.h"
#include "render/timing/SegmentTimeMap.h"
#include "render/timing/ZoomAnimator.h"

#include <algorithm>
#include <cmath>

namespace vantro::editor {
namespace {

constexpr double askedRate = exporting::VideoExporter::averageBitRate / 8.0; // bytes/s
constexpr double soundRate = exporting::VideoExporter::soundBitRate / 8.0;   // bytes/s
constexpr double restingShare = 2.5; // a film's rate to its recording's while the camera rests
constexpr double cameraBytesPerPixel = 1.6;    // a second, while it moves: then every pixel changes
constexpr double smallShare = 0.8;             // what "small" leaves of both
constexpr double sizeExponent = 0.75;          // larger pictures take fewer bytes a pixel
constexpr double gifBytesPerPixel = 0.17;      // a picture, where much moves in the recording
constexpr double gifCameraBytesPerPixel = 0.1; // a picture, while the camera moves
constexpr double gifShare = 1.5;               // of the recording's rate, where little moves
constexpr int cameraLooks = 2000;              // at the camera, over the whole film
constexpr double moment = 0.02;                // s, in which it moves or does not
constexpr double shortestElapsed = 1;          // s
constexpr double smallestFraction = 0.01;

double pixels(model::Size size) {
    return size.width * size.height;
}

model::Size canvasOf(const ExportMeasure& measure) {
    const auto base = measure.isGif ? exporting::gifBaseSize(measure.videoSize)
                                    : exporting::baseSize(measure.resolution, measure.videoSize);
    return model::canvasSize(measure.edit.canvasAspectRatio, base);
}

/// The share of the film in which the camera moves.
double cameraShare(const ExportMeasure& measure, const render::SegmentTimeMap& map) {
    const auto& clicks = measure.edit.clickEvents;
    const render::ZoomAnimator camera({clicks.begin(), clicks.end()}, measure.videoSize);
    int moving = 0;
    for (int look = 0; look < cameraLooks; ++look) {
        const double time = map.sourceTime(map.totalDuration() * look / cameraLooks);
        if (camera.keyframe(time) != camera.keyframe(time + moment))
            ++moving;
    }
    return static_cast<double>(moving) / cameraLooks;
}

} // namespace

std::uint64_t estimatedBytes(const ExportMeasure& measure) {
    if (!(measure.sourceDuration > 0) || !(pixels(measure.videoSize) > 0))
        return 0;
    const render::SegmentTimeMap map(measure.edit.segments, measure.sourceDuration);
    const double recordedRate = static_cast<double>(measure.sourceBytes) / measure.sourceDuration;
    const auto canvas = canvasOf(measure);
    const double moving = cameraShare(measure, map);
    double rate = 0;
    if (measure.isGif) {
        const double pixelRate = exporting::GifExporter::usualFrameRate * pixels(canvas);
        rate = moving * gifCameraBytesPerPixel * pixelRate +
               (1 - moving) * std::min(gifBytesPerPixel * pixelRate, gifShare * recordedRate);
    } else {
        const double larger = std::pow(pixels(canvas) / pixels(measure.videoSize), sizeExponent);
        rate = larger * (moving * cameraBytesPerPixel * pixels(measure.videoSize) +
                         restingShare * recordedRate);
        rate = std::min(rate, askedRate);
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
