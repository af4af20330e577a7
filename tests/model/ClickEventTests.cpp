#include "model/ClickEvent.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace vantro::model {
namespace {

using Offsets = std::vector<std::pair<double, double>>;

ClickEvent clickAt(double timestamp) {
    return {.timestamp = timestamp};
}

/// The offsets that clicks at these times come out with, in order of time, to the microsecond.
Offsets normalizedOffsets(const std::vector<double>& timestamps, double duration) {
    std::vector<ClickEvent> events;
    for (const auto timestamp : timestamps)
        events.push_back(clickAt(timestamp));
    normalizeClickEvents(events, duration);
    const auto rounded = [](double seconds) { return std::round(seconds * 1e6) / 1e6; };
    Offsets offsets;
    for (const auto& event : events)
        offsets.emplace_back(rounded(event.startOffset), rounded(event.endOffset));
    return offsets;
}

TEST(NormalizeClickEvents, ClampsMergesAndShrinks) {
    constexpr auto nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* what;
        std::vector<double> times;
        double duration;
        Offsets offsets;
    } cases[]{
        {"none", {}, 60, {}},
        {"just after the start", {0.3}, 60, {{0.3, 1.5}}},
        {"at the start", {0}, 60, {{0.05, 1.5}}},
        {"before the end", {59.5}, 60, {{1.5, 0.5}}},
        {"at the end", {60}, 60, {{1.5, 0.05}}},
        {"a burst, out of order", {12.5, 10, 11}, 60, {{1.5, 4}, {0.05, 0.05}, {0.05, 0.05}}},
        {"a burst at the end, below the floor", {9.98, 10}, 10, {{1.5, 0.02}, {0.05, 0.05}}},
        {"an overlap", {10, 11.6}, 60, {{1.5, 0.8}, {0.8, 1.5}}},
        {"two that touch", {10, 13}, 60, {{1.5, 1.5}, {1.5, 1.5}}},
    };
    for (const auto& [what, times, duration, offsets] : cases)
        EXPECT_EQ(normalizedOffsets(times, duration), offsets) << what;
    // Times that are not numbers go last and shrink nobody.
    EXPECT_EQ(normalizedOffsets({nan, 3, nan, 1}, 60)[1], std::pair(1.0, 1.5));
}

TEST(NormalizeClickEvents, SeesInEachPairWhatThePairBeforeHasLeft) {
    std::vector<ClickEvent> events{clickAt(10), clickAt(12), clickAt(14)};
    events[0].endOffset = 6;
    events[1].zoomLevel = 4;
    events[1].isRightClick = true;
    auto expected = events;
    normalizeClickEvents(events, 60);
    expected[0].endOffset = 6 * (2 / 7.5);
    expected[1].startOffset = 1.5 * (2 / 7.5);
    expected[1].endOffset = expected[2].startOffset = 1;
    EXPECT_EQ(events, expected) << "and nothing else has changed";
}

} // namespace
} // namespace vantro::model
