#include "render/scene/RoundedRect.h"
#include "render/scene/ShadowImage.h"

#include <cmath>

#include <gtest/gtest.h>

namespace vantro::render {
namespace {

double gaussian(double distance, double deviation) {
    return std::exp(-distance * distance / (2 * deviation * deviation)) /
           (deviation * std::sqrt(2 * M_PI));
}

/// The shadow at a pixel, by summing up the coverage of every pixel around, without any
/// shortcut.
double convolvedShadow(const ShadowShape& thrower, int x, int y) {
    PixelRect lowered = thrower.place;
    lowered.y += 10 * thrower.scale;
    const RoundedRect shape(lowered, thrower.cornerRadius);
    double alpha = 0;
    for (int down = -75; down <= 75; ++down) {
        double across = 0;
        for (int right = -75; right <= 75; ++right)
            across += gaussian(right, 15 * thrower.scale) *
                      shape.coverage(x + right + 0.5, y + down + 0.5);
        alpha += 127.5 * gaussian(down, 15 * thrower.scale) * across;
    }
    return alpha;
}

class ShadowImage : public testing::TestWithParam<ShadowShape> {};

TEST_P(ShadowImage, IsTheBlurredRectangle) {
    const PixelSize canvas = GetParam().canvas;
    const auto image = drawShadow(GetParam());
    for (int y = 0; y < canvas.height; y += 5)
        for (int x = 0; x < canvas.width; x += 11)
            ASSERT_NEAR(image->row(y)[x] * (255.0 / 65536), convolvedShadow(GetParam(), x, y), 0.25)
                << x << ", " << y;
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, ShadowImage,
    testing::Values(ShadowShape{{200, 150}, {40, 40, 120, 70}, 16},
                    ShadowShape{{203, 151}, {31.3, 22.8, 140.4, 105.4}, 32}, // between pixels
                    ShadowShape{{160, 160}, {40, 40, 80, 80}, 500},          // a circle
                    ShadowShape{{160, 90}, {30, 20, 100, 50}, 0},            // sharp corners
                    ShadowShape{{160, 90}, {30.4, 20, 100, 50}, 9, 0.5},
                    ShadowShape{{90, 60}, {-20, -10, 130, 80}, 25},  // reaches over the canvas
                    ShadowShape{{400, 60}, {50, 20, 300, 20}, 10})); // corners far apart

} // namespace
} // namespace vantro::render
