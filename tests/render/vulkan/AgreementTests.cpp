#include "render/TestScenes.h"
#include "render/software/SoftwareRenderer.h"
#include "render/vulkan/CheckedGpu.h"

#include <map>
#include <numeric>

#include <fmt/format.h>

namespace vantro::render::vulkan {
namespace {

using media::PixelFormat;

/// How far the two renderers may lie apart in any channel, of 255: each rounds several times, and
/// GPUs place samples to 1/256 of a texel only.
constexpr int tolerance = 2;
/// Most samples are equal; a picture that stands a fraction of a pixel elsewhere has a larger mean.
constexpr double usualDifference = 0.1;

/// In how many passes and from what the scene is drawn.
std::string pathOf(const Scene& scene) {
    const bool isWhole =
        scene.recording.part ==
        PixelRect::whole({scene.recording.picture->width(), scene.recording.picture->height()});
    return fmt::format("{} background, {}", scene.background ? "with" : "without",
                       scene.zoom || !isWhole ? "zoomed" : "whole");
}

class RendererAgreement : public CheckedGpu {
  protected:
    /// Draws the scene with both.
    test::Difference expectAgreement(const Scene& scene, PixelFormat format,
                                     std::string_view what) {
        const auto found = test::difference(*test::drawn(*gpu, scene, format),
                                            *test::drawn(*software, scene, format));
        EXPECT_LE(found.worst, tolerance) << what;
        return found;
    }

    std::unique_ptr<Renderer> software = software::makeSoftwareRenderer(1);
};

TEST_F(RendererAgreement, HoldsForAnyScene) {
    constexpr std::uint32_t frames = 500;
    std::map<std::string, std::vector<double>> means;
    for (std::uint32_t seed = 0; seed < frames; ++seed) {
        const auto frame = test::generateFrame(seed);
        const auto found =
            expectAgreement(frame.scene, frame.outputFormat, fmt::format("seed {}", seed));
        means[pathOf(frame.scene)].push_back(found.mean);
    }
    EXPECT_EQ(means.size(), 4U) << "a path was never taken";
    for (const auto& [path, found] : means) {
        const double mean = std::reduce(found.begin(), found.end()) / double(found.size());
        fmt::print("{}: {} frames, mean difference {:.3f}\n", path, found.size(), mean);
        EXPECT_LE(mean, usualDifference) << path;
    }
}

/// Everything switched on, zoomed in, on a canvas of that size.
struct FullFrame {
    model::BackgroundSettings background;
    PixelSize canvas;
    SceneContent content;

    explicit FullFrame(PixelSize size) : canvas(size) {
        const double x = size.width * 0.3;
        const double y = size.height * 0.4;
        content.recording = test::screenPicture(PixelFormat::i420, size.width, size.height, 1);
        content.camera = {1.7, x, y};
        content.background = &background;
        content.backgroundPicture = test::screenPicture(PixelFormat::bgra, 90, 60, 2);
        content.pointer = PixelPoint{x, y};
        content.cursor = &test::arrow();
        content.webcam = test::screenPicture(PixelFormat::bgra, 128, 72, 3);
        content.webcamPosition = model::WebcamPosition::topRight;
        content.webcamSize = 0.25;
    }
    Scene scene() const { return makeScene(canvas, content); }
};

TEST_F(RendererAgreement, HoldsWhileOneThingAfterTheOtherChanges) {
    // One renderer draws all of these, so whatever it keeps from frame to frame must be renewed.
    FullFrame frame({320, 200});
    auto& content = frame.content;
    PixelFormat format = PixelFormat::bgra;
    const auto expectAfter = [&](std::string_view what, const auto& change) {
        change();
        expectAgreement(frame.scene(), format, what);
    };
    expectAfter("first frame", [] {});
    expectAfter("next source, of another standard", [&] {
        content.recording = test::screenPicture(PixelFormat::i420, 320, 200, 11,
                                                {media::ColorMatrix::bt601, /*fullRange=*/true});
    });
    expectAfter("next webcam picture",
                [&] { content.webcam = test::screenPicture(PixelFormat::bgra, 128, 72, 12); });
    expectAfter("another background", [&] {
        content.backgroundPicture = test::screenPicture(PixelFormat::bgra, 90, 60, 13);
    });
    expectAfter("another shadow", [&] { frame.background.cornerRadius = 5; });
    expectAfter("larger cursor", [&] { content.cursorScale = 4; });
    expectAfter("smaller cursor", [&] { content.cursorScale = 0.3; });
    expectAfter("zoomed out", [&] { content.camera.scale = 1; });
    expectAfter("planar output", [&] { format = PixelFormat::i420; });
    expectAfter("planar output, zoomed in", [&] { content.camera.scale = 2; });
    expectAfter("color for a background", [&] {
        content.backgroundPicture.reset();
        frame.background.type = model::BackgroundColor{0.9, 0.1, 0.5};
    });
    expectAfter("another canvas", [&] { frame.canvas = {280, 210}; });
    expectAfter("no background", [&] { content.background = nullptr; });
    expectAfter("source that is not planar", [&] {
        format = PixelFormat::bgra;
        content.recording = test::screenPicture(PixelFormat::bgra, 320, 200, 14);
    });
    expectAfter("no webcam", [&] { content.webcam.reset(); });
}

TEST_F(RendererAgreement, HoldsForALargeScreen) {
    FullFrame frame({3840, 2160});
    expectAgreement(frame.scene(), PixelFormat::bgra, "zoomed");
    frame.content.camera.scale = 1;
    expectAgreement(frame.scene(), PixelFormat::i420, "not zoomed");
}

} // namespace
} // namespace vantro::render::vulkan
