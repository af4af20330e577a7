#include "render/ReferenceRenderer.h"
#include "render/scene/FrameLayout.h"
#include "render/software/RowKernels.h"
#include "render/software/SoftwareRenderer.h"

#include <cmath>
#include <cstring>
#include <random>

#include <gtest/gtest.h>
#include <hwy/targets.h>

namespace vantro::render {
namespace {

using test::difference;
using test::referenceFrame;

const CursorImage& arrow() {
    static const CursorImage cursor = standardCursor(CursorStyle::builtIn);
    return cursor;
}

/// Soft shapes with hard edges here and there, like a screen; chroma stays within the gamut.
std::shared_ptr<media::PixelBuffer> testPicture(media::PixelFormat format, int width, int height,
                                                unsigned seed, bool opaque = true) {
    auto picture = media::PixelBuffer::allocate(format, width, height);
    std::mt19937 random(seed);
    for (int plane = 0; plane < picture->planeCount(); ++plane)
        for (int y = 0; y < picture->planeHeight(plane); ++y)
            for (int x = 0; x < picture->stride(plane); ++x) {
                const auto noise = static_cast<int>(random() % 40);
                const int block = (x / 24 + y / 6) % 3 * 60;
                picture->mutableRow(plane, y)[x] =
                    static_cast<std::uint8_t>(format == media::PixelFormat::bgra ? noise + block
                                              : plane == 0 ? 60 + noise + block / 2
                                                           : 118 + noise / 2);
            }
    for (int y = 0; format == media::PixelFormat::bgra && y < height; ++y)
        for (int x = 0; x < width; ++x) {
            std::uint8_t* pixel = picture->mutableRow(0, y) + static_cast<std::ptrdiff_t>(x) * 4;
            pixel[3] = opaque ? 255 : std::max({pixel[0], pixel[1], pixel[2]});
        }
    return picture;
}

struct FrameShape {
    int canvasWidth = 0;
    int canvasHeight = 0;
    int sourceWidth = 0;
    int sourceHeight = 0;
};

RenderParams frame(const FrameShape& shape, media::PixelFormat format,
                   const std::optional<model::BackgroundSettings>& background = std::nullopt) {
    RenderParams params;
    params.source = testPicture(format, shape.sourceWidth, shape.sourceHeight, 1);
    params.canvasWidth = shape.canvasWidth;
    params.canvasHeight = shape.canvasHeight;
    params.hasBackground = background.has_value();
    const auto inset = recordingInset(
        {static_cast<double>(shape.canvasWidth), static_cast<double>(shape.canvasHeight)},
        {static_cast<double>(shape.sourceWidth), static_cast<double>(shape.sourceHeight)},
        background);
    params.insetX = static_cast<float>(inset.rect.x);
    params.insetY = static_cast<float>(inset.rect.y);
    params.insetW = static_cast<float>(inset.rect.width);
    params.insetH = static_cast<float>(inset.rect.height);
    params.cornerRadius = static_cast<float>(inset.cornerRadius);
    return params;
}

void addWebcam(RenderParams& params, double fraction, model::WebcamPosition position, int width,
               int height) {
    params.webcam = testPicture(media::PixelFormat::bgra, width, height, 9);
    const auto placement = webcamPlacement(
        {static_cast<double>(params.canvasWidth), static_cast<double>(params.canvasHeight)},
        {static_cast<double>(width), static_cast<double>(height)}, position, fraction,
        params.keyframe.scale);
    params.webcamRect = placement.square;
    params.webcamDrawRect = placement.drawRect;
    params.webcamCornerRadius = placement.cornerRadius;
}

/// Any kind of frame, decided by `random`.
RenderParams randomFrame(std::mt19937& random, media::PixelFormat format) {
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution(low, high)(random);
    };
    const auto size = [&] { return static_cast<int>(std::exp(between(0, 5.4))); };
    const auto chance = [&](double p) { return between(0, 1) < p; };
    std::optional<model::BackgroundSettings> background;
    if (chance(0.75)) {
        background.emplace();
        background->padding = between(0, 0.45);
        background->cornerRadius = chance(0.2) ? 1000 : between(0, 40);
    }
    RenderParams params = frame({size(), size(), size(), size()}, format, background);
    params.keyframe = {chance(0.4) ? 1.0 : between(1, 4), between(0, params.source->width()),
                       between(0, params.source->height())};
    if (chance(0.5))
        params.bgColor = RenderColor{static_cast<float>(between(0, 1)), 0.5F, 0.9F, 1};
    if (chance(0.3))
        params.backgroundImage =
            testPicture(media::PixelFormat::bgra, size(), size(), 3, chance(0.5));
    if (chance(0.7)) {
        params.cursorX = static_cast<float>(between(-20, params.source->width() + 20));
        params.cursorY = static_cast<float>(between(-20, params.source->height() + 20));
        params.cursorScale = static_cast<float>(between(0.3, 6));
    }
    if (chance(0.4))
        addWebcam(params, between(0.05, 0.6), static_cast<model::WebcamPosition>(random() % 4),
                  size(), size());
    return params;
}

/// Draws with `threads` threads into memory that was grey before.
std::shared_ptr<media::PixelBuffer> drawn(const RenderParams& params, media::PixelFormat format,
                                          unsigned threads = 1) {
    auto output = media::PixelBuffer::allocate(format, params.canvasWidth, params.canvasHeight);
    for (int plane = 0; plane < output->planeCount(); ++plane)
        for (int y = 0; y < output->planeHeight(plane); ++y)
            std::memset(output->mutableRow(plane, y), 77,
                        static_cast<std::size_t>(output->stride(plane)));
    EXPECT_TRUE(software::makeSoftwareRenderer(arrow(), threads)->render(params, *output));
    return output;
}

bool drawsNothing(const RenderParams& params) {
    return !params.hasBackground && !params.keyframe.isZoomed() && !params.cursorX &&
           !params.webcam;
}

/// Compares `count` random frames with the reference.
void compareRandomFrames(unsigned seed, int count, media::PixelFormat source,
                         media::PixelFormat output, double tolerance) {
    std::mt19937 random(seed);
    const CursorTextures cursor(arrow());
    for (int i = 0; i < count; ++i) {
        const RenderParams params = randomFrame(random, source);
        if (drawsNothing(params))
            continue;
        const auto worst = test::difference(*drawn(params, output, 1 + i % 3),
                                            test::referenceFrame(params, cursor));
        EXPECT_LE(worst.inside, tolerance) << "frame " << i << " of seed " << seed;
        EXPECT_LE(worst.rim, tolerance + 1) << "frame " << i << " of seed " << seed;
    }
}

TEST(SoftwareRenderer, DrawsEveryKindOfFrameLikeTheReference) {
    compareRandomFrames(1, 150, media::PixelFormat::bgra, media::PixelFormat::bgra, 1.0);
    compareRandomFrames(2, 60, media::PixelFormat::i420, media::PixelFormat::bgra, 2.0);
    compareRandomFrames(3, 60, media::PixelFormat::bgra, media::PixelFormat::i420, 1.5);
    compareRandomFrames(4, 60, media::PixelFormat::i420, media::PixelFormat::i420, 2.0);
}

TEST(SoftwareRenderer, DrawsTheSameWithEveryInstructionSet) {
    std::mt19937 random(5);
    std::vector<RenderParams> frames;
    for (int i = 0; i < 25; ++i)
        frames.push_back(randomFrame(random, media::PixelFormat::bgra));
    std::vector<std::shared_ptr<media::PixelBuffer>> expected;
    for (const auto& params : frames)
        expected.push_back(drawn(params, media::PixelFormat::bgra));
    for (const auto target : hwy::SupportedAndGeneratedTargets()) {
        hwy::SetSupportedTargetsForTest(target);
        SCOPED_TRACE(software::kernelTarget());
        for (std::size_t i = 0; i < frames.size(); ++i) {
            const auto output = drawn(frames[i], media::PixelFormat::bgra);
            for (int y = 0; y < output->height(); ++y)
                ASSERT_EQ(std::memcmp(output->row(0, y), expected[i]->row(0, y),
                                      static_cast<std::size_t>(output->width()) * 4),
                          0)
                    << "frame " << i << " row " << y;
        }
        hwy::SetSupportedTargetsForTest(0);
    }
}

TEST(SoftwareRenderer, CrossesTileBordersWithoutASeam) {
    RenderParams params =
        frame({1203, 419, 1201, 417}, media::PixelFormat::i420, model::BackgroundSettings{});
    params.keyframe = {1.7, 500, 200};
    params.cursorX = 520.0F; // stands on the border between two tiles
    params.cursorY = 130.0F;
    params.cursorScale = 4;
    addWebcam(params, 0.3, model::WebcamPosition::bottomLeft, 321, 211);
    const auto reference = test::referenceFrame(params, CursorTextures(arrow()));
    EXPECT_LE(test::difference(*drawn(params, media::PixelFormat::bgra, 4), reference).inside, 2.0);
    params.keyframe = {};
    const auto whole = test::referenceFrame(params, CursorTextures(arrow()));
    EXPECT_LE(test::difference(*drawn(params, media::PixelFormat::i420, 4), whole).inside, 2.0);
}

TEST(SoftwareRenderer, LeavesTheOutputAloneWhenThereIsNothingToDraw) {
    RenderParams params = frame({40, 30, 40, 30}, media::PixelFormat::bgra);
    params.keyframe.scale = 1.001; // does not count as zoomed
    EXPECT_EQ(drawn(params, media::PixelFormat::bgra)->row(0, 7)[9], 77);
    params.keyframe = {1.0011, 20, 15};
    EXPECT_NE(std::memcmp(drawn(params, media::PixelFormat::bgra)->row(0, 7),
                          std::vector<std::uint8_t>(160, 77).data(), 160),
              0);
}

TEST(SoftwareRenderer, CopiesASourceOfTheOutputsShapeAroundTheCursor) {
    RenderParams params = frame({600, 300, 600, 300}, media::PixelFormat::i420);
    params.cursorX = 300.0F;
    params.cursorY = 150.0F;
    const auto output = drawn(params, media::PixelFormat::i420);
    for (int plane = 0; plane < 3; ++plane)
        for (const int y : {0, 50, output->planeHeight(plane) - 1})
            EXPECT_EQ(std::memcmp(output->row(plane, y), params.source->row(plane, y),
                                  static_cast<std::size_t>(plane == 0 ? 600 : 300)),
                      0);
    EXPECT_NE(output->row(0, 160)[304], params.source->row(0, 160)[304]);
}

TEST(SoftwareRenderer, ConvertsTheColoursOfASourceWithAnotherMatrix) {
    RenderParams params = frame({64, 48, 64, 48}, media::PixelFormat::bgra);
    auto source = media::PixelBuffer::allocate(media::PixelFormat::i420, 64, 48,
                                               {media::ColorMatrix::bt601, true});
    for (int plane = 0; plane < 3; ++plane)
        for (int y = 0; y < source->planeHeight(plane); ++y)
            std::memset(source->mutableRow(plane, y),
                        plane == 2   ? 255
                        : plane == 1 ? 85
                                     : 76,
                        static_cast<std::size_t>(source->stride(plane)));
    params.source = source; // pure red
    params.cursorX = 500.0F;
    params.cursorY = 500.0F;
    const auto output = drawn(params, media::PixelFormat::i420);
    EXPECT_NEAR(output->row(0, 20)[20], 63, 1);
    EXPECT_NEAR(output->row(1, 10)[10], 102, 1);
    EXPECT_NEAR(output->row(2, 10)[10], 240, 1);
}

TEST(SoftwareRenderer, BlendsTheCursorWithoutADarkHalo) {
    RenderParams params = frame({200, 200, 200, 200}, media::PixelFormat::bgra);
    auto white = media::PixelBuffer::allocate(media::PixelFormat::bgra, 200, 200);
    for (int y = 0; y < 200; ++y)
        std::memset(white->mutableRow(0, y), 255, 800);
    params.source = white;
    params.cursorX = 60.3F;
    params.cursorY = 40.7F;
    params.cursorScale = 4.1F;
    auto rim = media::PixelBuffer::allocate(media::PixelFormat::bgra, 64,
                                            64); // a half-transparent white disc
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 256; ++x)
            rim->mutableRow(0, y)[x] = std::hypot(x / 4 - 31.5, y - 31.5) < 28 ? 128 : 0;
    auto output = media::PixelBuffer::allocate(media::PixelFormat::bgra, 200, 200);
    software::makeSoftwareRenderer({rim, 24, 24, 0, 0}, 1)->render(params, *output);
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 800; ++x)
            ASSERT_GE(output->row(0, y)[x], 254) << x / 4 << ", " << y;
}

TEST(SoftwareRenderer, RedrawsTheBackdropWhenItsColourPlaceOrSizeChanges) {
    const auto renderer = software::makeSoftwareRenderer(arrow(), 2);
    const CursorTextures cursor(arrow());
    model::BackgroundSettings settings;
    RenderParams params = frame({220, 140, 220, 140}, media::PixelFormat::bgra, settings);
    std::vector<RenderParams> changes{params};
    params.bgColor = RenderColor{1, 0.5F, 0, 1};
    changes.push_back(params);
    settings.padding = 0.2;
    changes.push_back(frame({220, 140, 220, 140}, media::PixelFormat::bgra, settings));
    changes.push_back(frame({180, 160, 220, 140}, media::PixelFormat::bgra, settings));
    changes.back().backgroundImage = testPicture(media::PixelFormat::bgra, 90, 50, 8);
    for (const RenderParams& change : changes)
        for (const media::PixelFormat format :
             {media::PixelFormat::bgra, media::PixelFormat::i420}) {
            auto output =
                media::PixelBuffer::allocate(format, change.canvasWidth, change.canvasHeight);
            renderer->render(change, *output);
            EXPECT_LE(test::difference(*output, test::referenceFrame(change, cursor)).inside, 1.5);
        }
}

TEST(SoftwareRenderer, SurvivesParametersOutOfAllProportion) {
    RenderParams params =
        frame({33, 21, 50, 40}, media::PixelFormat::bgra, model::BackgroundSettings{});
    params.keyframe = {1e12, NAN, 1e300};
    params.cursorX = 1e30F;
    params.cursorY = NAN;
    params.cursorScale = 1e20F;
    params.cornerRadius = NAN;
    addWebcam(params, 1e6, model::WebcamPosition::topLeft, 3, 900);
    EXPECT_EQ(drawn(params, media::PixelFormat::bgra)->row(0, 10)[3], 255);
    params.insetW = 0;
    params.insetH = 0;
    params.keyframe = {};
    params.webcam = nullptr;
    EXPECT_EQ(drawn(params, media::PixelFormat::bgra)->row(0, 10)[3], 255);
}

} // namespace
} // namespace vantro::render
