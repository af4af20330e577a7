#include "render/timing/ZoomAnimator.h"

#include <limits>

#include <gtest/gtest.h>

namespace vantro::render {
namespace {

constexpr model::Size frame{.width = 1920, .height = 1080};
constexpr auto nan = std::numeric_limits<double>::quiet_NaN();
constexpr ZoomKeyframe wholeFrame{.scale = 1, .centerX = 960, .centerY = 540};

model::ClickEvent click(double timestamp, double start, double end, double zoom, double x,
                        double y = 500) {
    return {.x = x,
            .y = y,
            .timestamp = timestamp,
            .startOffset = start,
            .endOffset = end,
            .zoomLevel = zoom};
}

struct Expected {
    double time;
    double scale;
    double centerX;
    double centerY = 500;
};

void expectCourse(const std::vector<model::ClickEvent>& clicks,
                  const std::vector<Expected>& course) {
    const ZoomAnimator animator(clicks, frame);
    for (const auto& [time, scale, x, y] : course) {
        const auto keyframe = animator.keyframe(time);
        EXPECT_NEAR(keyframe.scale, scale, 1e-12) << "at " << time;
        EXPECT_NEAR(keyframe.centerX, x, 1e-9) << "at " << time;
        EXPECT_NEAR(keyframe.centerY, y, 1e-9) << "at " << time;
    }
}

TEST(ZoomAnimator, PausesZoomsInHoldsAndZoomsOutAroundOneClick) {
    expectCourse({click(5, 1, 2, 2, 1000)}, {{3.999, 1, 960, 540},
                                             {4.24, 1, 960, 540},
                                             {4.4375, 1.0625, 1000, 540 / 1.0625},
                                             {4.625, 1.5, 1000},
                                             {5.0, 2, 1000},
                                             {5.874, 2, 1000},
                                             {5.875 + 1.125 / 2, 1.125, 1000},
                                             {7.0, 1, 960, 540},
                                             {7.001, 1, 960, 540}});
}

TEST(ZoomAnimator, KeepsTheViewInsideTheFrame) {
    expectCourse({click(5, 1, 2, 2, 0, 5000)}, {{5, 2, 480, 810}});
}

TEST(ZoomAnimator, PansToClicksInsideTheHoldInOrderOfTime) {
    const auto first = click(10, 1, 2, 2, 600, 400);
    const auto second = click(10.5, 1, 0.1, 1.5, 1200, 600);
    const auto third = click(11, 1, 0.1, 1.5, 700, 600);
    const std::vector<Expected> course{
        {9.9, 1.9893, 700, 600}, // heads for the last from the start
        {10, 2, 600, 400},       {10.25, 2, 900, 500}, {10.5, 2, 1200, 600}, {10.75, 2, 950, 600},
        {11.05, 2, 700, 600},    {11.1, 2, 700, 600}}; // 0.9 of the last second zooms out
    const double eased = 1 - 4 * 0.1 * 0.1 * 0.1 / (0.75 * 0.75 * 0.75);
    auto exact = course;
    exact[0].scale = 1 + eased;
    expectCourse({first, second, third}, exact);
    expectCourse({third, first, second}, exact);
    // One at the very end of the hold counts as inside it, one at the same time does not.
    expectCourse({first, click(12, 1, 1, 1.1, 1300)}, {{9.9, 1 + eased, 1300}});
    expectCourse({first, click(10, 1, 1, 1.1, 1300)}, {{9.9, 1 + eased, 600, 400}});
}

TEST(ZoomAnimator, GivesTheStrongerAndOnATieTheEarlierClickTheCamera) {
    const auto first = click(10, 1, 1, 2, 600);
    const auto second = click(10, 1, 1, 2, 1200);
    auto stronger = second;
    stronger.zoomLevel = 2.5;
    expectCourse({first, second}, {{10, 2, 600}});
    expectCourse({second, first}, {{10, 2, 1200}});
    expectCourse({first, stronger}, {{10, 2.5, 1200}});
}

TEST(ZoomAnimator, NeverZoomsToASilencedClickByItself) {
    // A burst that was merged into its first click, which the user then set to a lower level.
    const auto merged = click(10, 1, 3, 1.2, 800);
    const auto silenced = click(11, 0.05, 0.05, 1.5, 900);
    const ZoomAnimator animator({merged, silenced}, frame);
    for (double t = 10; t < 11.87; t += 0.01)
        ASSERT_EQ(animator.keyframe(t).scale, 1.2) << t;
    EXPECT_EQ(animator.keyframe(11).centerX, 900) << "it is a point on the way";
    EXPECT_EQ(ZoomAnimator({silenced}, frame).keyframe(11), wholeFrame);
}

TEST(ZoomAnimator, IsLeftAloneByClicksThatMakeNoSense) {
    // A zoom-out without length divides by zero at its one instant.
    const ZoomAnimator endless({click(5, 1, 0, 2, 1000)}, frame);
    EXPECT_EQ(endless.keyframe(5).scale, 1);
    EXPECT_GT(endless.keyframe(4.99).scale, 1.9);
    const auto real = click(5, 1, 1, 2, 1000);
    const std::vector mixed{click(nan, 1, 1, 3, 1200), click(5, nan, 1, 3, 1200), real,
                            click(5, 1, nan, 3, 1200), click(5, 1, 1, nan, 1200)};
    const ZoomAnimator animator(mixed, frame);
    const ZoomAnimator alone({real}, frame);
    for (double t = 4; t < 6; t += 0.01)
        ASSERT_GE(animator.keyframe(t).scale, alone.keyframe(t).scale) << t;
}

} // namespace
} // namespace vantro::render
