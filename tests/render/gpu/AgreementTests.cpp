#include "render/gpu/CheckedGpu.h"
#include "render/gpu/GeneratedFrames.h"
#include "render/gpu/QuadPlan.h"
#include "render/gpu/TestPictures.h"
#include "render/scene/CursorImage.h"
#include "render/scene/FrameLayout.h"
#include "render/software/SoftwareRenderer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>

#include <fmt/format.h>

namespace vantro::render::gpu {
namespace {

/// How far the two renderers may lie apart in any channel, of 255: each rounds several times, and
/// GPUs place samples to 1/256 of a texel only.
constexpr int tolerance = 2;

int worstDifference(const media::PixelBuffer& a, const media::PixelBuffer& b) {
    int worst = 0;
    for (int plane = 0; plane < a.planeCount(); ++plane) {
        const int bytes = a.format() == media::PixelFormat::bgra ? a.width() * 4
                          : plane == 0                           ? a.width()
                                                                 : (a.width() + 1) / 2;
        for (int y = 0; y < a.planeHeight(plane); ++y)
            for (int i = 0; i < bytes; ++i)
                worst = std::max(worst, std::abs(a.row(plane, y)[i] - b.row(plane, y)[i]));
    }
    return worst;
}

std::shared_ptr<media::PixelBuffer> blank(const GeneratedFrame& frame) {
    auto output = media::PixelBuffer::allocate(frame.outputFormat, frame.params.canvasWidth,
                                               frame.params.canvasHeight);
    for (int plane = 0; plane < output->planeCount(); ++plane)
        for (int y = 0; y < output->planeHeight(plane); ++y)
            std::memset(output->mutableRow(plane, y), 77,
                        static_cast<std::size_t>(output->stride(plane)));
    return output;
}

std::string nameOf(DrawPath path) {
    switch (path) {
    case DrawPath::nothing:
        return "nothing";
    case DrawPath::plain:
        return "plain";
    case DrawPath::zoomWithoutBackground:
        return "zoom without background";
    case DrawPath::scene:
        return "scene";
    case DrawPath::direct:
        return "direct";
    }
    return "";
}

class RendererAgreement : public CheckedGpu {
  protected:
    /// Draws the frame with both; gives their worst difference.
    int expectAgreement(const GeneratedFrame& frame, std::string_view what) {
        const auto fromGpu = blank(frame);
        const auto fromProcessor = blank(frame);
        EXPECT_TRUE(gpu->render(frame.params, *fromGpu));
        EXPECT_TRUE(software->render(frame.params, *fromProcessor));
        const int worst = worstDifference(*fromGpu, *fromProcessor);
        EXPECT_LE(worst, tolerance) << what << ": " << frame.describe();
        return worst;
    }

    std::unique_ptr<Renderer> software =
        software::makeSoftwareRenderer(standardCursor(CursorStyle::builtIn), 1);
};

TEST_F(RendererAgreement, holdsForAnyParameters) {
    constexpr std::uint32_t frames = 500;
    struct Tally {
        int frames = 0;
        int worst = 0;
    };
    std::map<std::string, Tally> tallies;
    for (std::uint32_t seed = 0; seed < frames; ++seed) {
        const GeneratedFrame frame = generateFrame(seed);
        const int difference = expectAgreement(frame, fmt::format("seed {}", seed));
        Tally& tally = tallies[nameOf(drawPath(frame.params))];
        ++tally.frames;
        tally.worst = std::max(tally.worst, difference);
    }
    for (const auto& [path, tally] : tallies) {
        fmt::print("{}: {} frames, worst difference {}\n", path, tally.frames, tally.worst);
        EXPECT_GE(tally.frames, 5) << path;
    }
    EXPECT_EQ(tallies.size(), 5U) << "a path was never taken";
}

/// Everything switched on, on a canvas of that size.
GeneratedFrame fullFrame(int width, int height) {
    GeneratedFrame frame;
    RenderParams& params = frame.params;
    params.source = screenPicture(media::PixelFormat::i420, width, height, 1);
    params.canvasWidth = width;
    params.canvasHeight = height;
    const model::Size size{static_cast<double>(width), static_cast<double>(height)};
    const RecordingInset inset = recordingInset(size, size, model::BackgroundSettings{});
    params.insetX = static_cast<float>(inset.rect.x);
    params.insetY = static_cast<float>(inset.rect.y);
    params.insetW = static_cast<float>(inset.rect.width);
    params.insetH = static_cast<float>(inset.rect.height);
    params.cornerRadius = 32;
    params.hasBackground = true;
    params.keyframe = {1.7, size.width * 0.3, size.height * 0.4};
    params.backgroundImage = screenPicture(media::PixelFormat::bgra, 90, 60, 2);
    params.cursorX = static_cast<float>(width) * 0.3F;
    params.cursorY = static_cast<float>(height) * 0.4F;
    params.webcam = screenPicture(media::PixelFormat::bgra, 128, 72, 3);
    const WebcamPlacement place =
        webcamPlacement(size, {128, 72}, model::WebcamPosition::topRight, 0.25, 1.7);
    params.webcamRect = place.square;
    params.webcamDrawRect = place.drawRect;
    params.webcamCornerRadius = place.cornerRadius;
    return frame;
}

TEST_F(RendererAgreement, holdsWhileOneThingAfterTheOtherChanges) {
    // One renderer draws all of these, so whatever it keeps from frame to frame must be renewed.
    GeneratedFrame frame = fullFrame(320, 200);
    RenderParams& params = frame.params;
    expectAgreement(frame, "first frame");
    params.source = screenPicture(media::PixelFormat::i420, 320, 200, 11,
                                  {media::ColorMatrix::bt601, /*fullRange=*/true});
    expectAgreement(frame, "next source, of another standard");
    params.webcam = screenPicture(media::PixelFormat::bgra, 128, 72, 12);
    expectAgreement(frame, "next webcam picture");
    params.backgroundImage = screenPicture(media::PixelFormat::bgra, 90, 60, 13);
    expectAgreement(frame, "another background");
    params.cornerRadius = 5;
    expectAgreement(frame, "another shadow");
    params.cursorScale = 4;
    expectAgreement(frame, "larger cursor");
    params.cursorScale = 0.3F;
    expectAgreement(frame, "smaller cursor");
    params.keyframe.scale = 1;
    expectAgreement(frame, "zoomed out");
    frame.outputFormat = media::PixelFormat::i420;
    expectAgreement(frame, "planar output");
    params.keyframe.scale = 2;
    expectAgreement(frame, "planar output, zoomed in");
    params.backgroundImage.reset();
    params.bgColor = RenderColor{0.9F, 0.1F, 0.5F, 1};
    expectAgreement(frame, "colour for a background");
    params.hasBackground = false;
    expectAgreement(frame, "no background");
    frame.outputFormat = media::PixelFormat::bgra;
    params.source = screenPicture(media::PixelFormat::bgra, 320, 200, 14);
    expectAgreement(frame, "source that is not planar");
    params.webcam.reset();
    params.webcamRect.reset();
    params.webcamDrawRect.reset();
    expectAgreement(frame, "no webcam");
}

TEST_F(RendererAgreement, holdsForALargeScreen) {
    GeneratedFrame frame = fullFrame(3840, 2160);
    expectAgreement(frame, "zoomed");
    frame.params.keyframe.scale = 1;
    frame.outputFormat = media::PixelFormat::i420;
    expectAgreement(frame, "not zoomed");
}

} // namespace
} // namespace vantro::render::gpu
