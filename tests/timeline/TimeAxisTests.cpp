#include "timeline/TimeAxis.h"

#include <algorithm>

#include <gmock/gmock.h>

namespace vantro::timeline {
namespace {

using testing::ElementsAre;

constexpr double labelWidth = 44;

std::vector<std::string> labels(const std::vector<RulerMark>& marks) {
    std::vector<std::string> result;
    for (const auto& mark : marks)
        if (mark.isMajor)
            result.push_back(mark.label);
    return result;
}

render::SegmentTimeMap whole(double seconds) {
    return {model::fullLengthTimeline(), seconds};
}

TEST(RulerTest, TakesTheIntervalThatSuitsTheFilm) {
    const TimeAxis axis{.width = 1000};
    const auto two = rulerMarks(whole(2), axis, labelWidth);
    EXPECT_THAT(labels(two), ElementsAre("0:00", "0:00.5", "0:01", "0:01.5", "0:02"));
    EXPECT_EQ(two.size(), 21U) << "every tenth of a second";
    EXPECT_DOUBLE_EQ(two[5].x, 250);
    EXPECT_THAT(labels(rulerMarks(whole(200), axis, labelWidth)),
                ElementsAre("0:00", "1:00", "2:00", "3:00"));
    EXPECT_THAT(labels(rulerMarks(whole(7200), axis, labelWidth)).at(1), "10:00")
        << "each minute would collide";
    EXPECT_TRUE(rulerMarks(whole(0), axis, labelWidth).empty());
    EXPECT_TRUE(rulerMarks(whole(5), {}, labelWidth).empty());
}

TEST(RulerTest, ShowsTimesOfTheFilmWhereTheyLieInTheSourceAndNoneInGaps) {
    const render::SegmentTimeMap map({{.startFraction = 0, .endFraction = 0.4},
                                      {.startFraction = 0.6, .endFraction = 1, .speed = 2}},
                                     10);
    const auto marks = rulerMarks(map, {.width = 1000}, labelWidth);
    EXPECT_THAT(labels(marks), ElementsAre("0:00", "0:01", "0:02", "0:03", "0:04", "0:05", "0:06"));
    EXPECT_DOUBLE_EQ(marks.back().x, 1000);
    EXPECT_NEAR(std::ranges::find(marks, "0:05", &RulerMark::label)->x, 800, 1e-6);
    for (const auto& mark : marks) {
        EXPECT_TRUE(mark.x <= 400.001 || mark.x > 600) << mark.x;
    }
}

TEST(TimeAxisTest, MagnifiesAtThePointerAndStaysOnTheRecording) {
    const TimeAxis all{.width = 1000};
    const TimeAxis magnified = all.magnified(4, 250, 0.01);
    EXPECT_DOUBLE_EQ(magnified.span, 0.25);
    EXPECT_DOUBLE_EQ(magnified.placeAt(250), 0.25);
    EXPECT_DOUBLE_EQ(magnified.xOf(0.25), 250);
    EXPECT_EQ(magnified.magnified(0.1, 990, 0.01), all);
    EXPECT_DOUBLE_EQ(all.magnified(1e9, 0, 0.01).span, 0.01);
    EXPECT_DOUBLE_EQ(magnified.scrolled(1e9).start, 0.75);
    EXPECT_DOUBLE_EQ(magnified.revealing(0.9).start, 0.65);
    EXPECT_EQ(magnified.revealing(0.3), magnified);
    EXPECT_EQ(magnified.fitted(), all);
    EXPECT_EQ(all.placeAt(-5), 0);
    EXPECT_EQ(TimeAxis{}.placeAt(7), 0);
}

} // namespace
} // namespace vantro::timeline
