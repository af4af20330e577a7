#include "render/TestScenes.h"
#include "render/software/SoftwareRenderer.h"
#include "render/vulkan/CheckedGpu.h"

#include <fmt/format.h>

namespace vantro::render::vulkan {
namespace {

using media::PixelFormat;

/// How far the two renderers may lie apart in any channel, of 255: each rounds several times, and
/// GPUs place samples to 1/256 of a texel only.
constexpr int tolerance = 2;

/// Mesa's software driver ends a shader's loops after 65,536 rounds, which only recordings drawn
/// smaller than a pixel could need.
bool isTooSmall(const PictureLayer& layer) {
    return layer.part.width / layer.place.width * (layer.part.height / layer.place.height) > 60'000;
}

class RendererAgreement : public CheckedGpu {
  protected:
    /// Draws the scene with both.
    void expectAgreement(const Scene& scene, PixelFormat format, std::string_view what) {
        EXPECT_LE(test::largestDifference(*test::drawn(*gpu, scene, format),
                                          *test::drawn(*software, scene, format)),
                  tolerance)
            << what;
    }

    std::unique_ptr<Renderer> software = software::makeSoftwareRenderer(1);
};

TEST_F(RendererAgreement, HoldsForAnyScene) {
    for (std::uint32_t seed = 0; seed < 500; ++seed) {
        const auto frame = test::generateFrame(seed);
        if (!isTooSmall(frame.scene.recording))
            expectAgreement(frame.scene, frame.outputFormat, fmt::format("seed {}", seed));
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
