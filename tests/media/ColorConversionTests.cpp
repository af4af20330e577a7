#include "media/color/ColorConversion.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>
#include <hwy/highway.h>

namespace vantro::media {
namespace {

/// Runs a check with each instruction set that this processor has and the code was built for.
template <typename Check>
void withEachInstructionSet(const Check& check) {
    for (const std::int64_t target : {HWY_EMU128, HWY_SSSE3, HWY_SSE4, HWY_AVX2, HWY_AVX3}) {
        const bool isPortable = target == HWY_EMU128;
        if (!isPortable && (hwy::SupportedTargets() & target) == 0)
            continue;
        SCOPED_TRACE(hwy::TargetName(target));
        hwy::SetSupportedTargetsForTest(target);
        hwy::GetChosenTarget().DeInit();
        check();
        hwy::SetSupportedTargetsForTest(0);
        hwy::GetChosenTarget().DeInit();
    }
}

void fillWithNoise(PixelBuffer& picture, unsigned seed) {
    std::mt19937 random(seed);
    for (int plane = 0; plane < picture.planeCount(); ++plane)
        for (int y = 0; y < picture.planeHeight(plane); ++y)
            std::generate_n(picture.mutableRow(plane, y), picture.stride(plane),
                            [&] { return static_cast<std::uint8_t>(random()); });
}

struct Yuv {
    double y;
    double u;
    double v;
};

/// BT.709 limited range, straight from the standard's definition.
Yuv exactYuv(double red, double green, double blue) {
    const double luma = 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    return {16 + luma * 219 / 255, 128 + (blue - luma) / 1.8556 * 224 / 255,
            128 + (red - luma) / 1.5748 * 224 / 255};
}

/// The exact color of the mean of a block of pixels, cut off at the picture's edges.
Yuv exactBlock(const PixelBuffer& bgra, int x, int y, int side) {
    double sums[3]{};
    int count = 0;
    for (int row = y; row < std::min(y + side, bgra.height()); ++row) {
        for (int column = x; column < std::min(x + side, bgra.width()); ++column, ++count) {
            for (int channel = 0; channel < 3; ++channel)
                sums[channel] += bgra.row(0, row)[std::ptrdiff_t{column} * 4 + channel];
        }
    }
    return exactYuv(sums[2] / count, sums[1] / count, sums[0] / count);
}

double worstI420Error(const PixelBuffer& bgra, const PixelBuffer& i420) {
    double worst = 0;
    for (int y = 0; y < bgra.height(); ++y) {
        for (int x = 0; x < bgra.width(); ++x) {
            worst = std::max(worst, std::abs(exactBlock(bgra, x, y, 1).y - i420.row(0, y)[x]));
            const Yuv block = exactBlock(bgra, x & ~1, y & ~1, 2);
            const int row = y / 2;
            const std::ptrdiff_t column = x / 2;
            worst = std::max(worst, std::abs(block.u - i420.row(1, row)[column]));
            worst = std::max(worst, std::abs(block.v - i420.row(2, row)[column]));
        }
    }
    return worst;
}

// Half a unit is what rounding costs; the rest is room for fixed-point factors.
constexpr double roundingError = 0.58;

TEST(ColorConversion, bgraBecomesTheExactI420AtEverySize) {
    withEachInstructionSet([] {
        for (const auto& [width, height] :
             {std::pair{1, 1}, {2, 2}, {3, 5}, {31, 7}, {64, 4}, {97, 33}, {129, 2}, {258, 6}}) {
            SCOPED_TRACE(testing::Message() << width << "x" << height);
            const auto bgra = PixelBuffer::allocate(PixelFormat::bgra, width, height);
            const auto i420 = PixelBuffer::allocate(PixelFormat::i420, width, height);
            fillWithNoise(*bgra, static_cast<unsigned>(width));
            color::convertBgraToI420(*bgra, *i420);
            EXPECT_LT(worstI420Error(*bgra, *i420), roundingError);
        }
    });
}

} // namespace
} // namespace vantro::media
