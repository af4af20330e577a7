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
std::vector<double> convolvedShadow(const ShadowCacheKey& key) {
    const int reach = 75;
    const double top = static_cast<double>(key.height) - key.insetY - key.insetH + 10;
    const RoundedRect shape(key.insetX, top, key.insetW, key.insetH, key.cornerRadius);
    const int width = key.width + 2 * reach;
    const int height = key.height + 2 * reach;
    std::vector<double> across(static_cast<std::size_t>(key.width * height));
    for (int y = 0; y < height; ++y) {
        std::vector<double> coverage(static_cast<std::size_t>(width));
        for (int x = 0; x < width; ++x)
            coverage[static_cast<std::size_t>(x)] =
                shape.coverage(x - reach + 0.5, y - reach + 0.5);
        for (int x = 0; x < key.width; ++x)
            for (int k = -reach; k <= reach; ++k)
                across[static_cast<std::size_t>(y * key.width + x)] +=
                    gaussian(k) * coverage[static_cast<std::size_t>(x + reach + k)];
    }
    std::vector<double> alpha(static_cast<std::size_t>(key.width * key.height));
    for (int y = 0; y < key.height; ++y)
        for (int x = 0; x < key.width; ++x)
            for (int k = -reach; k <= reach; ++k)
                alpha[static_cast<std::size_t>(y * key.width + x)] +=
                    127.5 * gaussian(k) *
                    across[static_cast<std::size_t>((y + reach + k) * key.width + x)];
    return alpha;
}

class ShadowImage : public testing::TestWithParam<ShadowCacheKey> {};

TEST_P(ShadowImage, IsTheBlurredRectanglePlusAFillWhereTheRecordingIsSolid) {
    const ShadowCacheKey key = GetParam();
    const auto image = drawShadow(key);
    const auto expected = convolvedShadow(key);
    const RoundedRect shape(key.insetX, static_cast<double>(key.height) - key.insetY - key.insetH,
                            key.insetW, key.insetH, key.cornerRadius);
    double worst = 0;
    for (int y = 0; y < key.height; ++y)
        for (int x = 0; x < key.width; ++x) {
            if (shape.coverage(x + 0.5, y + 0.5) >= 1)
                ASSERT_EQ(image->row(y)[x], 255) << x << ", " << y;
            else
                worst = std::max(worst,
                                 std::abs(image->row(y)[x] -
                                          expected[static_cast<std::size_t>(y * key.width + x)]));
        }
    EXPECT_LT(worst, 0.75);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, ShadowImage,
    testing::Values(ShadowCacheKey{200, 150, 40, 40, 120, 70, 16},
                    ShadowCacheKey{203, 151, 31.3F, 22.8F, 140.4F, 105.4F, 32}, // between pixels
                    ShadowCacheKey{160, 160, 40, 40, 80, 80, 500},              // a circle
                    ShadowCacheKey{160, 90, 30, 20, 100, 50, 0},                // sharp corners
                    ShadowCacheKey{90, 60, -20, -10, 130, 80, 25},  // reaches over the canvas
                    ShadowCacheKey{400, 60, 50, 20, 300, 20, 10})); // corners far apart

TEST(ShadowCache, KeepsAnImageWhileItsKeyIsEqual) {
    ShadowCache cache;
    ShadowCacheKey key{80, 60, 10, 10, 60, 40, 8};
    const auto first = cache.imageFor(key);
    EXPECT_EQ(cache.imageFor(key), first);
    key.insetY = 12;
    const auto moved = cache.imageFor(key);
    EXPECT_NE(moved, first);
    EXPECT_NE(moved->alpha, first->alpha);
}

TEST(ShadowImageOfNothing, IsClear) {
    const auto image = drawShadow({40, 30, 20, 15, 0, 0, 32});
    EXPECT_EQ(std::count(image->alpha.begin(), image->alpha.end(), 0), 40 * 30);
}

} // namespace
} // namespace vantro::render
