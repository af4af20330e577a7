#include "render/TestScenes.h"
#include "render/software/RowKernels.h"
#include "render/software/SoftwareRenderer.h"

#include <cmath>
#include <cstring>

#include <gtest/gtest.h>
#include <hwy/targets.h>

namespace vantro::render {
namespace {

using media::PixelFormat;

using Pixel = std::array<int, 3>;

Pixel pixelAt(const media::PixelBuffer& picture, int x, int y) {
    const std::uint8_t* pixel = picture.row(0, y) + std::ptrdiff_t{x} * 4;
    return {pixel[0], pixel[1], pixel[2]};
}

std::shared_ptr<media::PixelBuffer> drawnInSoftware(const Scene& scene, PixelFormat format,
                                                    unsigned threads = 1) {
    return test::drawn(*software::makeSoftwareRenderer(threads), scene, format);
}

/// The recording over the whole canvas.
SceneContent alone(std::shared_ptr<const media::PixelBuffer> recording) {
    SceneContent content;
    content.recording = std::move(recording);
    content.cursor = &test::arrow();
    return content;
}

TEST(SoftwareRenderer, DrawsLayersInOrderEachInItsPlace) {
    auto content = alone(test::flatPicture(PixelFormat::bgra, 160, 100, {10, 20, 200, 255}));
    const model::BackgroundSettings background{
        .type = model::BackgroundColor{0.2, 1, 0.4}, .padding = 0.25, .cornerRadius = 20};
    content.background = &background;
    content.webcam = test::flatPicture(PixelFormat::bgra, 30, 50, {250, 240, 5, 255});
    content.webcamSize = 0.25; // 80 pixels, reaching over the recording's right edge
    content.pointer = PixelPoint{40, 30};
    content.cursorScale = 4;
    const Scene scene = makeScene({320, 200}, content);
    const auto picture = drawnInSoftware(scene, PixelFormat::bgra);
    const auto shadow = drawShadow(scene.background->shadow);
    const auto shaded = [&](int x, int y) { // the background's color under the shadow
        const double light = 1 - shadow->row(y)[x] / 65536.0;
        return Pixel{static_cast<int>(std::lround(102 * light)),
                     static_cast<int>(std::lround(255 * light)),
                     static_cast<int>(std::lround(51 * light))};
    };
    EXPECT_EQ(pixelAt(*picture, 2, 2), shaded(2, 2));
    EXPECT_EQ(pixelAt(*picture, 81, 51), shaded(81, 51)) << "the rounded corner shows the shadow";
    EXPECT_EQ(pixelAt(*picture, 200, 60), (Pixel{10, 20, 200}));
    EXPECT_EQ(pixelAt(*picture, 128, 104), (Pixel{0, 0, 0})) << "the cursor's body";
    EXPECT_EQ(pixelAt(*picture, 238, 140), (Pixel{250, 240, 5})) << "the webcam covers it";
}

TEST(SoftwareRenderer, MixesNeighborsInProportion) {
    auto ramp = test::flatPicture(PixelFormat::bgra, 2, 1, {0, 100, 200, 255});
    std::memset(ramp->mutableRow(0, 0) + 4, 200, 3);
    const auto picture = drawnInSoftware(makeScene({40, 3}, alone(ramp)), PixelFormat::bgra);
    for (int x = 0; x < 40; ++x) {
        const double share = std::clamp((x + 0.5) / 20 - 0.5, 0.0, 1.0);
        EXPECT_NEAR(pixelAt(*picture, x, 1)[0], 200 * share, 1) << x;
        EXPECT_NEAR(pixelAt(*picture, x, 1)[1], 100 + 100 * share, 1) << x;
    }
}

TEST(SoftwareRenderer, DrawsTheSameWithEveryInstructionSetAndNumberOfThreads) {
    std::vector<test::GeneratedFrame> frames;
    for (std::uint32_t seed = 1000; seed < 1030; ++seed)
        frames.push_back(test::generateFrame(seed));
    std::vector<std::shared_ptr<media::PixelBuffer>> expected;
    for (const auto& frame : frames)
        expected.push_back(drawnInSoftware(frame.scene, frame.outputFormat, 4));
    for (const auto target : hwy::SupportedAndGeneratedTargets()) {
        hwy::SetSupportedTargetsForTest(target);
        for (std::size_t i = 0; i < frames.size(); ++i)
            EXPECT_EQ(test::largestDifference(
                          *drawnInSoftware(frames[i].scene, frames[i].outputFormat), *expected[i]),
                      0)
                << software::kernelTarget() << ", frame " << i;
        hwy::SetSupportedTargetsForTest(0);
    }
}

TEST(SoftwareRenderer, CopiesASourceOfTheOutputsShapeAroundTheCursor) {
    auto content = alone(test::screenPicture(PixelFormat::i420, 600, 300, 1));
    content.pointer = PixelPoint{300, 150};
    const auto output = drawnInSoftware(makeScene({600, 300}, content), PixelFormat::i420);
    const media::PixelBuffer& source = *content.recording;
    for (int plane = 0; plane < 3; ++plane)
        for (const int y : {0, 50, output->planeHeight(plane) - 1})
            EXPECT_EQ(std::memcmp(output->row(plane, y), source.row(plane, y),
                                  static_cast<std::size_t>(plane == 0 ? 600 : 300)),
                      0);
    EXPECT_NE(output->row(0, 160)[304], source.row(0, 160)[304]);
}

TEST(SoftwareRenderer, BlendsTheCursorWithoutADarkHalo) {
    auto disc = media::PixelBuffer::allocate(PixelFormat::bgra, 64, 64);
    for (int y = 0; y < 64; ++y) // half-transparent white
        for (int x = 0; x < 256; ++x)
            disc->mutableRow(0, y)[x] = std::hypot(x / 4 - 31.5, y - 31.5) < 28 ? 128 : 0;
    const CursorTextures cursor({disc, 24, 24, 0, 0});
    auto content = alone(test::flatPicture(PixelFormat::bgra, 200, 200, {255, 255, 255, 255}));
    content.cursor = &cursor;
    content.pointer = PixelPoint{60.3, 40.7};
    content.cursorScale = 4.1;
    const auto output = drawnInSoftware(makeScene({200, 200}, content), PixelFormat::bgra);
    EXPECT_LE(test::largestDifference(*output, *content.recording), 1);
}

TEST(SoftwareRenderer, SurvivesScenesOutOfAllProportion) {
    auto content = alone(test::screenPicture(PixelFormat::bgra, 50, 40, 1));
    model::BackgroundSettings background;
    background.cornerRadius = NAN;
    content.background = &background;
    content.camera = {1e12, NAN, 1e300};
    content.pointer = PixelPoint{1e30, NAN};
    content.cursorScale = 1e20;
    content.webcam = test::screenPicture(PixelFormat::bgra, 3, 900, 2);
    content.webcamSize = 1e6;
    const auto alphaOf = [&] {
        return drawnInSoftware(makeScene({33, 21}, content), PixelFormat::bgra)->row(0, 10)[3];
    };
    EXPECT_EQ(alphaOf(), 255);
    background.padding = 0.5; // no recording is left
    content.camera = {};
    content.webcam = nullptr;
    EXPECT_EQ(alphaOf(), 255);
}

} // namespace
} // namespace vantro::render
