#include "backgrounds/Generator.h"
#include "backgrounds/JpegWriter.h"
#include "backgrounds/Noise.h"
#include "backgrounds/Relief.h"
#include "backgrounds/tests/JpegFile.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

namespace vantro::backgrounds {
namespace {

constexpr Frame tiny{160, 90};

/// sRGB as its standard writes it.
double codeValue(double linear) {
    return 255 * (linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055);
}

TEST(Painter, PicturesAreTheSameOnEachRunWithAnyNumberOfThreadsAndNoneIsBroken) {
    base::WorkerPool one(1);
    base::WorkerPool three(3);
    ASSERT_EQ(catalog().size(), 26U);
    for (const auto& entry : catalog()) {
        const Canvas canvas = paint(entry, tiny, one);
        const float grain = entry.finish.grain;
        EXPECT_EQ(canvas.toBytes(grain, one).pixels,
                  paint(entry, tiny, three).toBytes(grain, three).pixels)
            << entry.name;
        int burnt = 0;
        for (int row = 0; row < tiny.height; ++row) {
            for (int column = 0; column < tiny.width; ++column) {
                const Rgb rgb = canvas.at(column, row);
                const float lowest = std::min({rgb.x, rgb.y, rgb.z});
                ASSERT_TRUE(std::isfinite(rgb.x + rgb.y + rgb.z) && lowest >= 0) << entry.name;
                burnt += lowest >= 1 ? 1 : 0;
            }
        }
        EXPECT_LT(burnt, tiny.width * tiny.height / 25) << entry.name;
    }
}

TEST(Painter, SlowGradientsDoNotBreakIntoBandsEvenAfterCompression) {
    const test::TemporaryFolder folder;
    base::WorkerPool pool(2);
    Canvas canvas({640, 256});
    // Six code values over 640 columns: undithered, each would be a band a hundred pixels wide.
    const auto light = [](float x) { return 0.030F + 0.0045F * x / 2.5F; };
    canvas.paint([&](Vec2 p) { return Rgb{light(p.x), light(p.x), light(p.x)}; }, pool);
    const auto path = folder.path() / "gradient.jpeg";
    writeJpeg(path, canvas.toBytes(0.7F, pool), 96);
    const ByteImage image = readJpeg(path);
    for (int column = 8; column < image.width - 8; ++column) {
        double sum = 0;
        for (int row = 0; row < image.height; ++row)
            sum += image.pixels[static_cast<std::size_t>(row * image.width + column) * 3 + 1];
        ASSERT_NEAR(sum / image.height, codeValue(light((static_cast<float>(column) + 0.5F) / 256)),
                    0.3);
    }
}

TEST(Painter, NoiseIsTheSameWithEveryCompiler) {
    // The pictures hang on these bits: a change means that every background changes.
    std::uint32_t sum = 0;
    for (int i = 0; i < 2000; ++i) {
        const Vec2 p{static_cast<float>(i) * 0.37F - 300, static_cast<float>(i) * 0.11F - 100};
        const Fractal fractal{.octaves = 7, .gain = 0.55F, .seed = static_cast<std::uint32_t>(i)};
        for (const float value :
             {fbm(p, fractal), ridged(p, fractal), eroded(p, fractal), cells(p, 9).second,
              sine(p.x), exponential(p.y * 0.1F), power(p.x + 301, 0.7F)})
            sum = hashOf(sum ^ std::bit_cast<std::uint32_t>(value));
    }
    EXPECT_EQ(sum, 2790318019U);
}

TEST(Painter, LevelGroundLiesWherePerspectivePutsIt) {
    constexpr Frame frame{320, 180};
    constexpr Camera camera{
        .height = 2, .horizon = 0.4F, .focal = 1.2F, .nearest = 1, .farthest = 300};
    base::WorkerPool pool(2);
    const Relief relief(frame, camera, [](Vec2, float) { return 0.F; }, pool);
    for (int row = 80; row < 180; row += 7) {
        const Vec2 p = frame.place(100, row);
        const float expected = camera.focal * camera.height / (p.y - camera.horizon);
        ASSERT_NEAR(relief.at(p).distance / expected, 1, 0.01) << row;
    }
    EXPECT_EQ(relief.at(frame.place(100, 60)).distance, Relief::sky);
}

TEST(Painter, WritesEachPictureAndATenthAsThumbnail) {
    const test::TemporaryFolder folder;
    base::WorkerPool pool(2);
    constexpr Frame frame{320, 180};
    const auto& entry = catalog()[5];
    const auto directory = folder.path() / "new" / "Backgrounds";
    writeBackground(entry, frame, directory, pool);
    EXPECT_EQ(readJpeg(directory / "builtin-06.jpeg").width, 320);
    const auto thumbnail = readJpeg(directory / "Thumbnails" / "builtin-06.jpeg");
    ASSERT_EQ(thumbnail.width, 32);
    ASSERT_EQ(thumbnail.height, 18);
    const Canvas expected = paint(entry, frame, pool).reduced({32, 18}, pool);
    for (int place = 0; place < 32 * 18; ++place)
        ASSERT_NEAR(thumbnail.pixels[static_cast<std::size_t>(place) * 3 + 1],
                    255 * encoded(expected.at(place % 32, place / 32).y), 12);
}

} // namespace
} // namespace vantro::backgrounds
