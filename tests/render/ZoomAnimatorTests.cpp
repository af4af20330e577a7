#include "render/timing/ZoomAnimator.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace vantro::render {
namespace {

constexpr model::Size frame{.width = 1920, .height = 1080};
constexpr auto nan = std::numeric_limits<double>::quiet_NaN();

model::ClickEvent click(double timestamp, double start, double end, double zoom, model::Point at) {
    return {.id = model::Uuid::random(),
            .x = at.x,
            .y = at.y,
            .timestamp = timestamp,
            .isRightClick = false,
            .startOffset = start,
            .endOffset = end,
            .zoomLevel = zoom};
}

/// The rules written down as directly as they can be, with every list built in full: what the
/// animator's shortcuts must never differ from.
class PlainAnimator {
  public:
    explicit PlainAnimator(std::vector<model::ClickEvent> clicks) : m_clicks(std::move(clicks)) {
        for (const auto& c : m_clicks) {
            std::vector<model::ClickEvent> list;
            for (const auto& d : m_clicks) {
                if (d.id != c.id && c.timestamp < d.timestamp &&
                    d.timestamp <= c.timestamp + c.endOffset)
                    list.push_back(d);
            }
            if (list.empty())
                continue;
            std::erase_if(m_intermediates, [&](const auto& entry) { return entry.first == c.id; });
            m_intermediates.emplace_back(c.id, list);
        }
    }

    ZoomKeyframe keyframe(double t) const {
        ZoomKeyframe best{.scale = 1, .centerX = 960, .centerY = 540};
        for (const auto& c : m_clicks) {
            const auto s = scaleOf(c, t);
            if (!(best.scale < s))
                continue;
            const auto center = centerOf(c, t, s);
            best = {.scale = s, .centerX = center.x, .centerY = center.y};
        }
        return best;
    }

  private:
    std::vector<model::ClickEvent> intermediatesOf(const model::ClickEvent& c) const {
        for (const auto& [id, list] : m_intermediates) {
            if (id == c.id)
                return list;
        }
        return {};
    }

    static double inOut(double p) {
        const double f = 2 * p - 2;
        return p < 0.5 ? p * (p * (p * 4)) : f * (f * (f * 0.5)) + 1;
    }

    double scaleOf(const model::ClickEvent& c, double t) const {
        double zoomOut = std::min(c.endOffset * 0.9, 1.125);
        double hold = c.endOffset - zoomOut;
        if (const auto list = intermediatesOf(c); !list.empty()) {
            const double span = list.back().timestamp - c.timestamp;
            const double tail = c.endOffset - span;
            zoomOut = std::min(tail * 0.9, 1.125);
            hold = span + tail - zoomOut;
        }
        const double local = t - (c.timestamp - c.startOffset);
        const double delay = c.startOffset * 0.25;
        const double zoomIn = c.startOffset * 0.75;
        if (local < 0 || local > delay + zoomIn + hold + zoomOut || local < delay)
            return 1;
        const double u = local - delay;
        if (u < zoomIn)
            return 1 + (c.zoomLevel - 1) * inOut(u / zoomIn);
        if (u < zoomIn + hold)
            return c.zoomLevel;
        const double g = (u - zoomIn - hold) / zoomOut - 1;
        return c.zoomLevel + (1 - c.zoomLevel) * (g * g * g + 1);
    }

    static model::Point clamp(const model::ClickEvent& c, double s) {
        const double halfW = frame.width / s * 0.5;
        const double halfH = frame.height / s * 0.5;
        return {.x = std::max(halfW, std::min(c.x, frame.width - halfW)),
                .y = std::max(halfH, std::min(c.y, frame.height - halfH))};
    }

    model::Point centerOf(const model::ClickEvent& c, double t, double s) const {
        auto points = intermediatesOf(c);
        points.insert(points.begin(), c);
        for (std::size_t i = 1; i < points.size(); ++i) {
            const auto& a = points[i - 1];
            const auto& b = points[i];
            if (!(a.timestamp <= t && t <= b.timestamp))
                continue;
            const double d = b.timestamp - a.timestamp;
            const double progress = d <= 0 ? 1 : inOut((t - a.timestamp) / d);
            const auto from = clamp(a, s);
            const auto to = clamp(b, s);
            return {.x = from.x + (to.x - from.x) * progress,
                    .y = from.y + (to.y - from.y) * progress};
        }
        return clamp(points.back(), s);
    }

    std::vector<model::ClickEvent> m_clicks;
    std::vector<std::pair<model::Uuid, std::vector<model::ClickEvent>>> m_intermediates;
};

TEST(ZoomAnimator, ShowsTheWholeFrameWithoutClicks) {
    const ZoomAnimator animator({}, frame);
    for (const double t : {-1.0, 0.0, 1e300, nan}) {
        const auto keyframe = animator.keyframe(t);
        EXPECT_EQ(keyframe, (ZoomKeyframe{.scale = 1, .centerX = 960, .centerY = 540}));
        EXPECT_FALSE(keyframe.isZoomed());
    }
}

TEST(ZoomAnimator, PausesZoomsInHoldsAndZoomsOutAroundOneClick) {
    const ZoomAnimator animator({click(5, 1, 2, 2, {.x = 1000, .y = 500})}, frame);
    const auto scaleAt = [&](double t) { return animator.keyframe(t).scale; };
    EXPECT_EQ(scaleAt(3.999), 1);
    EXPECT_EQ(scaleAt(4.24), 1);
    EXPECT_GT(scaleAt(4.3), 1);
    EXPECT_EQ(scaleAt(4.625), 1.5);
    EXPECT_EQ(scaleAt(5.0), 2);
    EXPECT_EQ(scaleAt(5.874), 2);
    EXPECT_LT(scaleAt(5.9), 2);
    EXPECT_NEAR(scaleAt(5.875 + 1.125 / 2), 2 - 0.875, 1e-12);
    EXPECT_EQ(scaleAt(7.0), 1);
    EXPECT_EQ(scaleAt(7.001), 1);
    EXPECT_EQ(animator.keyframe(5.5), (ZoomKeyframe{.scale = 2, .centerX = 1000, .centerY = 500}));
}

TEST(ZoomAnimator, KeepsTheViewInsideTheFrame) {
    const ZoomAnimator animator({click(5, 1, 2, 2, {.x = 0, .y = 5000})}, frame);
    EXPECT_EQ(animator.keyframe(5), (ZoomKeyframe{.scale = 2, .centerX = 480, .centerY = 810}));
}

TEST(ZoomAnimator, PansToClicksInsideTheHold) {
    const std::vector clicks{click(10, 1, 2, 2, {.x = 600, .y = 400}),
                             click(10.5, 1, 0.1, 1.5, {.x = 1200, .y = 600})};
    const ZoomAnimator animator(clicks, frame);
    const auto heading = animator.keyframe(9.9); // zooming in, already towards the last click
    EXPECT_EQ(heading.centerX, 1200);
    EXPECT_EQ(animator.keyframe(10).centerX, 600);
    const auto half = animator.keyframe(10.25);
    EXPECT_EQ(half, (ZoomKeyframe{.scale = 2, .centerX = 900, .centerY = 500}));
    EXPECT_EQ(animator.keyframe(10.5).centerX, 1200);
    EXPECT_EQ(animator.keyframe(10.874).scale, 2);
    EXPECT_LT(animator.keyframe(10.876).scale, 2);
    EXPECT_EQ(animator.keyframe(10.8).centerX, 1200);
}

TEST(ZoomAnimator, GivesTheEarlierClickTheCameraOnATie) {
    const auto first = click(10, 1, 1, 2, {.x = 600, .y = 500});
    const auto second = click(10, 1, 1, 2, {.x = 1200, .y = 500}); // not later, so no pan either
    EXPECT_EQ(ZoomAnimator({first, second}, frame).keyframe(10).centerX, 600);
    EXPECT_EQ(ZoomAnimator({second, first}, frame).keyframe(10).centerX, 1200);
    auto stronger = second;
    stronger.zoomLevel = 2.5;
    EXPECT_EQ(ZoomAnimator({first, stronger}, frame).keyframe(10).centerX, 1200);
}

TEST(ZoomAnimator, NeverAnswersWithAScaleThatIsNoNumber) {
    // A zoom-out without length divides by zero at its one instant.
    const ZoomAnimator endless({click(5, 1, 0, 2, {})}, frame);
    EXPECT_EQ(endless.keyframe(5).scale, 1);
    EXPECT_GT(endless.keyframe(4.99).scale, 1.9);
    const std::vector absurd{click(nan, 1, 1, 2, {}), click(5, nan, 1, 2, {}),
                             click(5, 1, nan, 2, {}), click(5, 1, 1, nan, {})};
    const ZoomAnimator animator(absurd, frame);
    const PlainAnimator plain(absurd);
    for (int step = 300; step < 800; ++step)
        EXPECT_EQ(animator.keyframe(step / 100.0), plain.keyframe(step / 100.0)) << step;
}

enum class Order { byTime, any };
enum class Identifiers { distinct, repeated };

/// Times lie on a coarse grid, so that ties and exact meetings are common.
std::vector<model::ClickEvent> anyClicks(std::mt19937& random, Order order,
                                         Identifiers identifiers) {
    const auto pick = [&](std::initializer_list<double> values) {
        return values.begin()[random() % values.size()];
    };
    std::vector<model::ClickEvent> clicks(random() % 25);
    for (auto& each : clicks) {
        each.timestamp = static_cast<double>(random() % 80) * 0.25;
        each.x = static_cast<double>(random() % 2000);
        each.y = static_cast<double>(random() % 1200);
        each.startOffset = pick({1.5, 0.5, 0.05, 0, -0.5});
        each.endOffset = pick({1.5, 4, 0.75, 0.05, 0, 30, -0.5});
        each.zoomLevel = pick({1.5, 1.5, 2, 3, 1, 0.5});
        if (identifiers == Identifiers::repeated)
            each.id = clicks[random() % clicks.size()].id;
    }
    if (order == Order::byTime)
        std::ranges::stable_sort(clicks, {}, &model::ClickEvent::timestamp);
    return clicks;
}

TEST(ZoomAnimator, AnswersAsThePlainRulesDoForAnyClicks) {
    std::mt19937 random(5);
    int zoomed = 0;
    for (int round = 0; round < 400; ++round) {
        const auto order = round % 2 == 0 ? Order::byTime : Order::any;
        const auto identifiers = round % 4 < 2 ? Identifiers::distinct : Identifiers::repeated;
        const auto clicks = anyClicks(random, order, identifiers);
        const ZoomAnimator animator(clicks, frame);
        const PlainAnimator plain(clicks);
        for (int step = -32; step < 400; ++step) {
            const auto t = step / 16.0;
            const auto keyframe = animator.keyframe(t);
            ASSERT_EQ(keyframe, plain.keyframe(t)) << "round " << round << ", time " << t;
            zoomed += keyframe.isZoomed() ? 1 : 0;
        }
    }
    EXPECT_GT(zoomed, 10'000);
}

TEST(ZoomAnimator, BearsVeryManyClicksInAnyOrder) {
    std::mt19937 random(9);
    std::vector<model::ClickEvent> clicks;
    for (int i = 0; i < 200'000; ++i)
        clicks.push_back(click(i * 0.01, 1.5, i == 0 ? 1e6 : 1.5, 2, {.x = 960, .y = 540}));
    const ZoomAnimator inOrder(clicks, frame);
    std::ranges::shuffle(clicks, random);
    const ZoomAnimator shuffled(clicks, frame);
    for (int t = 0; t < 2'000; ++t)
        ASSERT_EQ(inOrder.keyframe(t).scale, 2);
    for (int t = 0; t < 2'000; t += 100)
        ASSERT_EQ(shuffled.keyframe(t).scale, 2);
}

} // namespace
} // namespace vantro::render
