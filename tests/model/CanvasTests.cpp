#include "model/Canvas.h"

#include <gtest/gtest.h>

namespace vantro::model {
namespace {

using enum CanvasAspectRatio;

TEST(Canvas, GrowsToTheRatioInEvenPixels) {
    EXPECT_EQ(canvasSize(ratio16x9, {1000, 1000}), (Size{1776, 1000}));
    EXPECT_EQ(canvasSize(ratio16x9, {1920, 1080}), (Size{1920, 1080}));
    EXPECT_EQ(canvasSize(ratio9x16, {1920, 1080}), (Size{1920, 3412}));
    EXPECT_EQ(canvasSize(ratio1x1, {1081, 1921}), (Size{1920, 1920}));
    EXPECT_EQ(canvasSize(ratio4x3, {800, 601}), (Size{800, 600})); // 801.33 x 601
    EXPECT_EQ(canvasSize(automatic, {1921, 1081}), (Size{1921, 1081}));
    EXPECT_EQ(targetRatio(automatic, {1921, 1081}), 1921.0 / 1081.0);
    EXPECT_EQ(targetRatio(automatic, {}), std::nullopt);
}

} // namespace
} // namespace vantro::model
