#include "timeline/ZoomSuggestions.h"

#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>

namespace vantro::timeline {
namespace {

using model::CursorPosition;
using testing::ElementsAre;

constexpr model::Size area{1000, 600};

/// Samples as a recording has them, from one place to the next in half a second each.
std::vector<CursorPosition> stays(const std::vector<CursorPosition>& places, double end) {
    std::vector<CursorPosition> samples;
    for (double time = 0; time < end; time += 0.016) {
        auto next = std::ranges::find_if(places, [&](auto& p) { return p.timestamp > time; });
        const auto& here = *std::prev(next);
        const double left = next == places.end() ? 1 : (next->timestamp - time) / 0.5;
        const double way = left < 1 ? 1 - left : 0;
        const double wobble = std::fmod(time, 0.3) * 20; // of a hand
        samples.push_back({here.x + way * (way > 0 ? next->x - here.x : 0) + wobble,
                           here.y + way * (way > 0 ? next->y - here.y : 0), time});
    }
    return samples;
}

TEST(RestsTest, AreWherePointersStayWithinTheRecordingWhateverTheHandDoes) {
    const auto rests = restsOf(
        stays({{100, 100, 0}, {500, 300, 2}, {1500, 300, 4}, {500, 300, 6}, {520, 340, 8}}, 10),
        area);
    std::vector<std::pair<double, bool>> found;
    for (const auto& rest : rests)
        found.emplace_back(std::round(rest.start), rest.isReached);
    EXPECT_THAT(found, ElementsAre(std::pair(0.0, false), std::pair(2.0, true),
                                   std::pair(6.0, true), std::pair(8.0, false)));
    EXPECT_TRUE(restsOf({}, area).empty());
    EXPECT_TRUE(restsOf({{NAN, 1, 0}, {NAN, 1, 5}}, area).empty());
}

struct SuggestionCase {
    const char* name;
    std::vector<Rest> rests;
    std::optional<ChangesAtRests> changes;
    std::vector<double> times;
};

Rest rest(double start, double end, bool isReached = true) {
    return {start, end, {100, 100}, isReached};
}

TEST(SuggestedZoomsTest, ComeFromWhatIsKnownAndLeaveRoom) {
    const SuggestionCase cases[] = {
        {"a change", {rest(4, 5)}, ChangesAtRests{4.5}, {4.5}},
        {"no change, and a short stay", {rest(4, 6)}, ChangesAtRests{{}}, {}},
        {"no change, and a long stay", {rest(4, 8)}, ChangesAtRests{{}}, {4}},
        {"a long stay that nothing led to", {rest(0.5, 8, false)}, ChangesAtRests{{}}, {}},
        {"an unknown picture", {rest(4, 6), rest(8, 8.5)}, {}, {4}},
        {"too near, the first", {rest(4, 5), rest(5, 6)}, ChangesAtRests{4, 5.5}, {4}},
        {"too near, the change", {rest(4, 8), rest(5, 6)}, ChangesAtRests{{}, 5.5}, {5.5}},
        {"within a zoom, and before one", {rest(10.5, 11), rest(8, 9)}, {{10.6, 8.6}}, {8.6}},
        {"at the ends", {rest(0, 1), rest(19, 20)}, ChangesAtRests{0.05, 19.95}, {}},
    };
    const Zooms zooms =
        std::vector{model::ClickEvent{.timestamp = 10.5, .startOffset = 1, .endOffset = 1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto found = suggestedZooms(c.rests, c.changes, zooms, 20);
        std::vector<double> times;
        for (const auto& each : found)
            times.push_back(each.zoom.timestamp);
        EXPECT_EQ(times, c.times);
        EXPECT_EQ(openSuggestions(found, zooms).size(), found.size()) << "they overlap nothing";
    }
}

} // namespace
} // namespace vantro::timeline
