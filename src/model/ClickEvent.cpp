#include "model/ClickEvent.h"

#include <algorithm>
#include <cmath>

namespace vantro::model {
namespace {

// Seconds. Normalization shrinks no offset below the floor, so that an event stays addressable.
constexpr double offsetFloor = 0.05;
// Both offsets at or below this mark an event that was merged away; a little above the floor, so
// that rounding cannot bring one back.
constexpr double silencedThreshold = 0.06;
// Clicks at most this far apart are one burst: the view should pan between them, not zoom again.
constexpr double burstGap = 1.5;
// Below this gap a proportional split would fall under the floor on both sides.
constexpr double proportionalGap = 0.1;

/// By time; times that are not numbers go last, so that any input has an order.
bool isEarlier(const ClickEvent& a, const ClickEvent& b) {
    return a.timestamp < b.timestamp || (std::isnan(b.timestamp) && !std::isnan(a.timestamp));
}

void clampToRecording(ClickEvent& event, double duration) {
    event.startOffset = std::max(std::min(event.timestamp, event.startOffset), offsetFloor);
    event.endOffset = std::max(std::min(duration - event.timestamp, event.endOffset), offsetFloor);
}

/// Lets the first event of a burst last as long as the burst, and silences the others.
void mergeBurst(std::span<ClickEvent> burst, double duration) {
    auto& first = burst.front();
    const auto& last = burst.back();
    first.endOffset = last.timestamp + last.endOffset - first.timestamp;
    first.endOffset = std::min(first.endOffset, duration - first.timestamp);
    for (auto& event : burst.subspan(1))
        event.startOffset = event.endOffset = offsetFloor;
}

void mergeBursts(std::vector<ClickEvent>& events, double duration) {
    for (std::size_t begin = 0; begin < events.size();) {
        auto end = begin + 1;
        while (end < events.size() && events[end].timestamp - events[end - 1].timestamp <= burstGap)
            ++end;
        if (end - begin > 1)
            mergeBurst(std::span(events).subspan(begin, end - begin), duration);
        begin = end;
    }
}

void resolveOverlap(ClickEvent& previous, ClickEvent& next) {
    const auto gap = next.timestamp - previous.timestamp;
    const auto need = previous.endOffset + next.startOffset;
    if (!(gap < need))
        return;
    if (gap >= proportionalGap) {
        const auto ratio = gap / need;
        previous.endOffset = std::max(previous.endOffset * ratio, offsetFloor);
        next.startOffset = std::max(next.startOffset * ratio, offsetFloor);
    } else {
        previous.endOffset = next.startOffset = std::max(gap * 0.5, offsetFloor);
    }
}

} // namespace

bool isSilenced(const ClickEvent& event) {
    return event.startOffset <= silencedThreshold && event.endOffset <= silencedThreshold;
}

void normalizeClickEvents(std::vector<ClickEvent>& events, double duration) {
    std::ranges::stable_sort(events, isEarlier);
    for (auto& event : events)
        clampToRecording(event, duration);
    mergeBursts(events, duration);

    // Which events are active is settled before overlaps shrink any of them.
    std::vector<ClickEvent*> active;
    for (auto& event : events) {
        if (!isSilenced(event))
            active.push_back(&event);
    }
    for (std::size_t i = 1; i < active.size(); ++i)
        resolveOverlap(*active[i - 1], *active[i]);
}

} // namespace vantro::model
