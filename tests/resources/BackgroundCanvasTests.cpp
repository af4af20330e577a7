#include "resources/JpegFile.h"
#include "resources/backgrounds/Canvas.h"
#include "resources/backgrounds/JpegWriter.h"
#include "support/TemporaryFolder.h"

#include <cmath>

#include <gtest/gtest.h>

namespace vantro::backgrounds {
namespace {

/// sRGB as its standard writes it.
double codeValue(double linear) {
    return 255 * (linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055);
}

/// The largest departure of column means from `ideal`: bands would show as steps of half a code
/// value, though every single pixel is rounded.
template <typename Ideal>
double bandingOf(const ByteImage& image, const Ideal& ideal) {
    double worst = 0;
    for (int column = 8; column < image.width - 8; ++column) {
        double sum = 0;
        for (int row = 0; row < image.height; ++row)
            sum += image.pixels[static_cast<std::size_t>(row * image.width + column) * 3 + 1];
        worst = std::max(worst, std::abs(sum / image.height - ideal(column)));
    }
    return worst;
}

TEST(BackgroundCanvas, SlowGradientsDoNotBreakIntoBandsEvenAfterCompression) {
    const test::TemporaryFolder folder;
    base::WorkerPool pool(2);
    Canvas canvas({640, 256});
    // Six code values over 640 columns: undithered, each would be a band a hundred pixels wide.
    const auto light = [](float x) { return 0.030F + 0.0045F * x / 2.5F; };
    canvas.paint([&](Vec2 p) { return Rgb{light(p.x), light(p.x), light(p.x)}; }, pool);
    const auto ideal = [&](int column) {
        return codeValue(light((static_cast<float>(column) + 0.5F) / 256));
    };
    const auto bytes = canvas.toBytes(0.7F, pool);
    EXPECT_LT(bandingOf(bytes, ideal), 0.25);

    const auto path = folder.path() / "gradient.jpeg";
    writeJpeg(path, bytes, 96);
    EXPECT_LT(bandingOf(readJpeg(path), ideal), 0.3);
}

TEST(BackgroundCanvas, CodeValuesAreSrgb) {
    base::WorkerPool pool(1);
    for (const float light : {0.F, 0.0005F, 0.01F, 0.214F, 0.5F, 1.F, 3.F}) {
        Canvas canvas({64, 64});
        canvas.paint([&](Vec2) { return Rgb{light, light, light}; }, pool);
        const auto image = canvas.toBytes(0, pool);
        double sum = 0;
        for (const auto value : image.pixels)
            sum += value;
        const double mean = sum / static_cast<double>(image.pixels.size());
        EXPECT_NEAR(mean, codeValue(std::min(1.F, light)), 0.4) << light;
    }
}

TEST(BackgroundCanvas, EnlargingAndReducingKeepStraightGradientsInPlace) {
    base::WorkerPool pool(2);
    const Painter ramp = [](Vec2 p) { return Rgb{p.x, p.y, 1}; };
    Canvas coarse({80, 45});
    coarse.paint(ramp, pool);
    const Canvas fine = coarse.enlarged({240, 135}, pool);
    const Canvas back = fine.reduced({80, 45}, pool);
    for (int row = 3; row < 42; ++row) {
        for (int column = 3; column < 77; ++column) {
            const Vec2 place = fine.frame().place(3 * column, 3 * row);
            ASSERT_NEAR(fine.at(3 * column, 3 * row).x, place.x, 1e-4);
            ASSERT_NEAR(fine.at(3 * column, 3 * row).y, place.y, 1e-4);
            ASSERT_NEAR(back.at(column, row).x, coarse.at(column, row).x, 1e-4);
            ASSERT_NEAR(back.at(column, row).y, coarse.at(column, row).y, 1e-4);
        }
    }
    EXPECT_NEAR(coarse.sampled({0.731F, 0.417F}).x, 0.731F, 1e-4);
    EXPECT_NEAR(coarse.sampled({0.731F, 0.417F}).y, 0.417F, 1e-4);
}

TEST(BackgroundCanvas, BloomSpreadsLightWithoutMakingAny) {
    base::WorkerPool pool(2);
    Canvas canvas({160, 90});
    canvas.paint(
        [](Vec2 p) { return length(p - Vec2{0.89F, 0.5F}) < 0.05F ? Rgb{5, 5, 5} : Rgb{}; }, pool);
    const auto total = [&] {
        double sum = 0;
        for (int row = 0; row < 90; ++row)
            for (int column = 0; column < 160; ++column)
                sum += canvas.at(column, row).x;
        return sum;
    };
    const double before = total();
    ASSERT_EQ(canvas.at(80, 38).x, 0);
    canvas.addBloom(0.2F, 0.06F, pool);
    EXPECT_NEAR(total() / before, 1, 0.01);
    EXPECT_GT(canvas.at(80, 38).x, 0.01F);
    EXPECT_LT(canvas.at(80, 45).x, 5);
}

} // namespace
} // namespace vantro::backgrounds
