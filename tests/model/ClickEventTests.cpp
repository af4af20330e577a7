#include "model/ClickEvent.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::model {
namespace {

struct Offsets {
    double start;
    double end;
};

ClickEvent clickAt(double timestamp) {
    ClickEvent click;
    click.timestamp = timestamp;
    return click;
}

/// The offsets that clicks at these times come out with, in order of time.
std::vector<Offsets> normalizedOffsets(const std::vector<double>& timestamps, double duration) {
    std::vector<ClickEvent> events;
    for (const auto timestamp : timestamps)
        events.push_back(clickAt(timestamp));
    normalizeClickEvents(events, duration);
    std::vector<Offsets> offsets;
    for (const auto& event : events)
        offsets.push_back({event.startOffset, event.endOffset});
    return offsets;
}

MATCHER_P2(HasOffsets, start, end, "") {
    return std::abs(arg.start - start) < 1e-9 && std::abs(arg.end - end) < 1e-9;
}

using testing::ElementsAre;
using testing::IsEmpty;

TEST(NormalizeClickEvents, ClampsZoomsToTheRecording) {
    EXPECT_THAT(normalizedOffsets({0.3}, 60), ElementsAre(HasOffsets(0.3, 1.5)));
    EXPECT_THAT(normalizedOffsets({0.0}, 60), ElementsAre(HasOffsets(0.05, 1.5)));
    EXPECT_THAT(normalizedOffsets({59.5}, 60), ElementsAre(HasOffsets(1.5, 0.5)));
    EXPECT_THAT(normalizedOffsets({60.0}, 60), ElementsAre(HasOffsets(1.5, 0.05)));
    EXPECT_THAT(normalizedOffsets({}, 60), IsEmpty());
}

TEST(NormalizeClickEvents, MergesABurstIntoItsFirstClick) {
    EXPECT_THAT(normalizedOffsets({12.5, 10, 11}, 60),
                ElementsAre(HasOffsets(1.5, 4.0), HasOffsets(0.05, 0.05), HasOffsets(0.05, 0.05)));
    // At the end of the recording the merged zoom ends with it, below the floor too.
    EXPECT_THAT(normalizedOffsets({9.98, 10}, 10),
                ElementsAre(HasOffsets(1.5, 0.02), HasOffsets(0.05, 0.05)));
}

TEST(NormalizeClickEvents, ShrinksOverlapsInProportion) {
    EXPECT_THAT(normalizedOffsets({10, 11.6}, 60),
                ElementsAre(HasOffsets(1.5, 0.8), HasOffsets(0.8, 1.5)));
    EXPECT_THAT(normalizedOffsets({10, 13}, 60),
                ElementsAre(HasOffsets(1.5, 1.5), HasOffsets(1.5, 1.5)));
    // Each pair sees what the pair before it has left.
    std::vector<ClickEvent> events{clickAt(10), clickAt(12), clickAt(14)};
    events[0].endOffset = 6;
    normalizeClickEvents(events, 60);
    EXPECT_NEAR(events[0].endOffset, 6 * 2 / 7.5, 1e-12);
    EXPECT_NEAR(events[1].startOffset, 1.5 * 2 / 7.5, 1e-12);
    EXPECT_NEAR(events[1].endOffset, 1.0, 1e-12);
    EXPECT_NEAR(events[2].startOffset, 1.0, 1e-12);
}

TEST(NormalizeClickEvents, LeavesPositionsIdentitiesAndZoomLevelsAlone) {
    std::vector<ClickEvent> events{clickAt(5), clickAt(1)};
    events[0].x = 3;
    events[0].zoomLevel = 4;
    events[0].isRightClick = true;
    const auto original = events[0];
    normalizeClickEvents(events, 60);
    EXPECT_EQ(events[1], original);
}

TEST(NormalizeClickEvents, HoldsItsPromisesForAnyClicks) {
    std::mt19937 random(7);
    for (int round = 0; round < 500; ++round) {
        const auto duration = std::uniform_real_distribution(1.0, 120.0)(random);
        std::uniform_real_distribution anyTime(0.0, duration);
        std::uniform_real_distribution anyOffset(0.0, 4.0);
        std::vector<ClickEvent> events(random() % 40);
        for (auto& event : events) {
            event.timestamp = anyTime(random);
            event.startOffset = anyOffset(random);
            event.endOffset = anyOffset(random);
        }
        normalizeClickEvents(events, duration);
        EXPECT_TRUE(std::ranges::is_sorted(events, {}, &ClickEvent::timestamp));
        const ClickEvent* previous = nullptr;
        for (const auto& event : events) {
            EXPECT_GE(event.startOffset, 0.05);
            EXPECT_GE(event.endOffset, std::min(0.05, duration - event.timestamp) - 1e-9);
            EXPECT_LE(event.startOffset, std::max(0.05, event.timestamp));
            EXPECT_LE(event.endOffset, std::max(0.05, duration - event.timestamp) + 1e-9);
            if (isSilenced(event))
                continue;
            // A side at the floor may reach into its neighbour by as much.
            if (previous != nullptr) {
                EXPECT_LE(previous->endOffset + event.startOffset,
                          event.timestamp - previous->timestamp + 0.05 + 1e-9);
            }
            previous = &event;
        }
    }
}

TEST(NormalizeClickEvents, BearsTimesThatAreNotNumbersAndVeryManyClicks) {
    constexpr auto nan = std::numeric_limits<double>::quiet_NaN();
    const auto offsets = normalizedOffsets({nan, 3, nan, 1, nan}, 60);
    ASSERT_EQ(offsets.size(), 5U);
    EXPECT_THAT(offsets[0], HasOffsets(1.0, 1.0));
    EXPECT_THAT(offsets[1], HasOffsets(1.0, 1.5));

    std::vector<double> many;
    for (int i = 0; i < 300'000; ++i)
        many.push_back((300'000 - i) * 0.001); // one burst, in reverse
    EXPECT_THAT(normalizedOffsets(many, 1'000).front(), HasOffsets(0.05, 301.499));
}

} // namespace
} // namespace vantro::model
