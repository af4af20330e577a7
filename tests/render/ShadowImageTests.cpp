#include "render/scene/RoundedRect.h"
#include "render/scene/ShadowImage.h"

#include <cmath>

#include <gtest/gtest.h>

namespace vantro::render {
namespace {

double gaussian(double distance) {
    return std::exp(-distance * distance / (2 * 15.0 * 15.0)) / (15.0 * std::sqrt(2 * M_PI));
}

/// The shadow alone, by summing up the coverage of every pixel around, without any shortcut.
std::vector<double> convolvedShadow(const ShadowShape& thrower) {
    const int reach = 75;
    const PixelSize canvas = thrower.canvas;
    PixelRect lowered = thrower.place;
    lowered.y += 10;
    const RoundedRect shape(lowered, thrower.cornerRadius);
    const int width = canvas.width + 2 * reach;
    const int height = canvas.height + 2 * reach;
    std::vector<double> across(static_cast<std::size_t>(canvas.width * height));
    for (int y = 0; y < height; ++y) {
        std::vector<double> coverage(static_cast<std::size_t>(width));
        for (int x = 0; x < width; ++x)
            coverage[static_cast<std::size_t>(x)] =
                shape.coverage(x - reach + 0.5, y - reach + 0.5);
        for (int x = 0; x < canvas.width; ++x)
            for (int k = -reach; k <= reach; ++k)
                across[static_cast<std::size_t>(y * canvas.width + x)] +=
                    gaussian(k) * coverage[static_cast<std::size_t>(x + reach + k)];
    }
    std::vector<double> alpha(static_cast<std::size_t>(canvas.width * canvas.height));
    for (int y = 0; y < canvas.height; ++y)
        for (int x = 0; x < canvas.width; ++x)
            for (int k = -reach; k <= reach; ++k)
                alpha[static_cast<std::size_t>(y * canvas.width + x)] +=
                    127.5 * gaussian(k) *
                    across[static_cast<std::size_t>((y + reach + k) * canvas.width + x)];
    return alpha;
}

class ShadowImage : public testing::TestWithParam<ShadowShape> {};

TEST_P(ShadowImage, IsTheBlurredRectanglePlusAFillWhereTheRecordingIsSolid) {
    const PixelSize canvas = GetParam().canvas;
    const auto image = drawShadow(GetParam());
    const auto expected = convolvedShadow(GetParam());
    const RoundedRect shape(GetParam().place, GetParam().cornerRadius);
    double worst = 0;
    for (int y = 0; y < canvas.height; ++y)
        for (int x = 0; x < canvas.width; ++x) {
            if (shape.coverage(x + 0.5, y + 0.5) >= 1)
                ASSERT_EQ(image->row(y)[x], 255) << x << ", " << y;
            else
                worst = std::max(
                    worst, std::abs(image->row(y)[x] -
                                    expected[static_cast<std::size_t>(y * canvas.width + x)]));
        }
    EXPECT_LT(worst, 0.75);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, ShadowImage,
    testing::Values(ShadowShape{{200, 150}, {40, 40, 120, 70}, 16},
                    ShadowShape{{203, 151}, {31.3, 22.8, 140.4, 105.4}, 32}, // between pixels
                    ShadowShape{{160, 160}, {40, 40, 80, 80}, 500},          // a circle
                    ShadowShape{{160, 90}, {30, 20, 100, 50}, 0},            // sharp corners
                    ShadowShape{{90, 60}, {-20, -10, 130, 80}, 25},  // reaches over the canvas
                    ShadowShape{{400, 60}, {50, 20, 300, 20}, 10})); // corners far apart

} // namespace
} // namespace vantro::render
