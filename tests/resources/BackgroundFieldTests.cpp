#include "resources/backgrounds/Noise.h"
#include "resources/backgrounds/Palette.h"

#include <cmath>

#include <gtest/gtest.h>

namespace vantro::backgrounds {
namespace {

TEST(BackgroundMath, AgreesWithTheLibraryToAFewUlps) {
    for (int i = -2200; i < 2200; ++i) {
        const float x = static_cast<float>(i) * 0.0137F;
        ASSERT_NEAR(sine(x), std::sin(static_cast<double>(x)), 1e-5) << x;
        ASSERT_NEAR(cosine(x), std::cos(static_cast<double>(x)), 1e-5) << x;
        ASSERT_NEAR(exp2Of(x) / std::exp2(static_cast<double>(x)), 1, 2e-6) << x;
        ASSERT_NEAR(exponential(x) / std::exp(static_cast<double>(x)), 1, 6e-6) << x;
        ASSERT_EQ(floorOf(x), std::floor(x)) << x;
    }
    for (int i = -200; i < 200; ++i) {
        const auto x = static_cast<float>(std::pow(1.07, i));
        ASSERT_NEAR(log2Of(x), std::log2(static_cast<double>(x)), 3e-6) << x;
        ASSERT_NEAR(power(x, 0.4F) / std::pow(static_cast<double>(x), 0.4), 1, 6e-6) << x;
    }
    EXPECT_EQ(power(0, 2.4F), 0);
    EXPECT_EQ(power(-1, 0.5F), 0);
}

TEST(BackgroundPalette, GradientsPassThroughTheirColours) {
    const Gradient gradient{{-1, 0x102030}, {0.5F, 0xc04080}, {2, 0xffffff}};
    const auto expectColour = [](Rgb rgb, std::uint32_t hex) {
        EXPECT_NEAR(255 * encoded(rgb.x), static_cast<double>(hex >> 16), 0.6);
        EXPECT_NEAR(255 * encoded(rgb.y), static_cast<double>(hex >> 8 & 255U), 0.6);
        EXPECT_NEAR(255 * encoded(rgb.z), static_cast<double>(hex & 255U), 0.6);
    };
    expectColour(gradient(-7), 0x102030);
    expectColour(gradient(-1), 0x102030);
    expectColour(gradient(0.5F), 0xc04080);
    expectColour(gradient(2), 0xffffff);
    expectColour(gradient(9), 0xffffff);
}

TEST(BackgroundPalette, OkLabHasItsPublishedValues) {
    // Red as the definition's author lists it.
    const Lab red = toLab(colour(0xff0000));
    EXPECT_NEAR(red.lightness, 0.62796, 1e-4);
    EXPECT_NEAR(red.a, 0.22486, 1e-4);
    EXPECT_NEAR(red.b, 0.12585, 1e-4);
    const Rgb back = toRgb(toLab({0.2F, 0.5F, 0.8F}));
    EXPECT_NEAR(back.x, 0.2F, 1e-4);
    EXPECT_NEAR(back.y, 0.5F, 1e-4);
    EXPECT_NEAR(back.z, 0.8F, 1e-4);
}

TEST(BackgroundNoise, IsContinuousCentredAndWithinItsRange) {
    constexpr Fractal fractal{.octaves = 6, .gain = 0.5F, .seed = 3};
    double sum = 0;
    float lowest = 0;
    float highest = 0;
    constexpr int count = 40000;
    for (int i = 0; i < count; ++i) {
        const Vec2 p{static_cast<float>(i % 200) * 0.173F - 17,
                     static_cast<float>(i / 200) * 0.191F - 19};
        const float value = fbm(p, fractal);
        sum += value;
        lowest = std::min(lowest, value);
        highest = std::max(highest, value);
        // Across the borders of cells too, since the coordinates run through zero and whole
        // numbers.
        ASSERT_NEAR(value, fbm(p + Vec2{1e-4F, -1e-4F}, fractal), 0.01);
        const float crest = ridged(p, fractal);
        ASSERT_TRUE(crest >= 0 && crest <= 1);
    }
    EXPECT_NEAR(sum / count, 0, 0.03);
    EXPECT_LT(lowest, -0.45F);
    EXPECT_GT(highest, 0.45F);
    EXPECT_GT(lowest, -1.3F);
    EXPECT_LT(highest, 1.3F);
}

TEST(BackgroundNoise, DetailSmallerThanAPixelIsLeftOut) {
    constexpr Fractal fractal{.octaves = 10, .gain = 0.6F, .seed = 5};
    const auto roughness = [](const Fractal& f) {
        double sum = 0;
        for (int i = 0; i < 4000; ++i) {
            const Vec2 p{static_cast<float>(i) * 0.31F, static_cast<float>(i) * 0.17F};
            sum += std::abs(fbm(p + Vec2{0.004F, 0}, f) - fbm(p, f));
        }
        return sum / 4000;
    };
    EXPECT_EQ(resolved(fractal, 1e-5F).visible, fractal.visible);
    EXPECT_LT(roughness(resolved(fractal, 0.05F)), 0.5 * roughness(fractal));
    EXPECT_EQ(fbm({0.3F, 0.4F}, resolved(fractal, 10)), 0);
}

TEST(BackgroundNoise, IsTheSameWithEveryCompiler) {
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

TEST(BackgroundNoise, CellsKnowTheirNearestPoints) {
    for (int i = 0; i < 500; ++i) {
        const Vec2 p{static_cast<float>(i) * 0.217F - 40, static_cast<float>(i) * 0.093F};
        const Cells here = cells(p, 4);
        ASSERT_LE(here.nearest, here.second);
        ASSERT_NEAR(length(here.toNearest), here.nearest, 1e-4);
        const Cells there = cells(p + here.toNearest, 4);
        ASSERT_NEAR(there.nearest, 0, 1e-3);
        ASSERT_EQ(there.id, here.id);
    }
}

} // namespace
} // namespace vantro::backgrounds
