#include "timeline/ZoomSuggestions.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vantro::timeline {
namespace {

using model::ClickEvent;
using model::CursorPosition;

// Points: a hand that holds still, and small motions within a button or a text field.
constexpr double restRadius = 24;
// Points from one rest to the next, from which on the pointer went there for something.
constexpr double shortestWay = 60;
// Seconds.
constexpr double shortestRest = 0.4;
constexpr double longRest = 3;      // with a picture that did not change
constexpr double moderateRest = 1;  // with a picture that nobody could look at
constexpr double leastDistance = 2; // between suggestions: the camera needs time to arrive

double distance(model::Point a, model::Point b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

bool isWithin(model::Point place, model::Size area) {
    return place.x >= 0 && place.y >= 0 && place.x < area.width && place.y < area.height;
}

/// The times of the active zooms, in order.
class TakenTimes {
  public:
    explicit TakenTimes(const Zooms& zooms) {
        for (const auto& zoom : zooms)
            if (!model::isSilenced(zoom))
                m_spans.push_back(
                    {zoom.timestamp - zoom.startOffset, zoom.timestamp + zoom.endOffset});
        std::ranges::sort(m_spans, {}, &Span::start);
        for (std::size_t i = 1; i < m_spans.size(); ++i)
            m_spans[i].end = std::max(m_spans[i].end, m_spans[i - 1].end);
    }

    /// When the zooms before `time` have ended; after it if one lasts until then.
    double endBefore(double time) const {
        const auto next = std::ranges::upper_bound(m_spans, time, {}, &Span::start);
        return next == m_spans.begin() ? 0 : std::prev(next)->end;
    }
    double startAfter(double time, double duration) const {
        const auto next = std::ranges::upper_bound(m_spans, time, {}, &Span::start);
        return next == m_spans.end() ? duration : next->start;
    }
    bool overlaps(const ClickEvent& zoom) const {
        const double end = zoom.timestamp + zoom.endOffset;
        const auto next = std::ranges::lower_bound(m_spans, end, {}, &Span::start);
        return next != m_spans.begin() && std::prev(next)->end > zoom.timestamp - zoom.startOffset;
    }

  private:
    struct Span {
        double start = 0;
        double end = 0; ///< of this one and all before
    };
    std::vector<Span> m_spans;
};

std::optional<Suggestion> suggestionAt(const Rest& rest, bool isPictureKnown,
                                       const double* change) {
    Suggestion suggestion;
    suggestion.zoom.x = rest.place.x;
    suggestion.zoom.y = rest.place.y;
    suggestion.zoom.timestamp = change != nullptr ? *change : rest.start;
    const double enough = isPictureKnown ? longRest : moderateRest;
    if (change != nullptr)
        suggestion.reason = Suggestion::Reason::change;
    else if (!rest.isReached || rest.end - rest.start < enough)
        return {};
    return suggestion;
}

/// Of two that are too near to each other, the one with the better reason, else the first.
void keepBetter(std::vector<Suggestion>& kept, const Suggestion& next) {
    using Reason = Suggestion::Reason;
    if (kept.empty() || next.zoom.timestamp - kept.back().zoom.timestamp >= leastDistance)
        kept.push_back(next);
    else if (kept.back().reason == Reason::rest && next.reason == Reason::change)
        kept.back() = next;
}

} // namespace

std::vector<Rest> restsOf(const std::vector<CursorPosition>& positions, model::Size area) {
    std::vector<Rest> rests;
    if (positions.empty())
        return rests;
    model::Point before{positions.front().x, positions.front().y};
    Rest rest{.start = positions.front().timestamp, .end = 0, .place = before};
    const auto finish = [&] {
        if (rest.end - rest.start < shortestRest)
            return;
        rest.isReached = distance(rest.place, before) >= shortestWay;
        before = rest.place;
        if (isWithin(rest.place, area))
            rests.push_back(rest);
    };
    for (const auto& position : positions) {
        const model::Point place{position.x, position.y};
        // Written so that what is no number ends a rest.
        if (!(distance(place, rest.place) <= restRadius)) {
            finish();
            rest = {.start = position.timestamp, .end = position.timestamp, .place = place};
        }
        rest.end = position.timestamp;
    }
    finish();
    return rests;
}

std::vector<Suggestion> suggestedZooms(const std::vector<Rest>& rests,
                                       const std::optional<ChangesAtRests>& changes,
                                       const Zooms& zooms, double duration) {
    const TakenTimes taken(zooms);
    std::vector<Suggestion> found;
    for (std::size_t i = 0; i < rests.size(); ++i) {
        const auto* seen = changes && i < changes->size() ? &(*changes)[i] : nullptr;
        const auto suggestion =
            suggestionAt(rests[i], changes.has_value(), seen && *seen ? &**seen : nullptr);
        // A zoom shows it already, or is about to.
        if (suggestion && taken.endBefore(suggestion->zoom.timestamp) + shortestLead <=
                              suggestion->zoom.timestamp)
            keepBetter(found, *suggestion);
    }
    std::vector<Suggestion> result;
    double end = 0; // of the one before
    for (auto& [zoom, reason] : found) {
        const double time = zoom.timestamp;
        const double from = std::max(taken.endBefore(time), end);
        const double to = std::min(taken.startAfter(time, duration), duration);
        zoom.startOffset = std::min(zoom.startOffset, time - from);
        zoom.endOffset = std::min(zoom.endOffset, to - time);
        if (zoom.startOffset < shortestLead || zoom.endOffset < shortestLead)
            continue;
        end = time + zoom.endOffset;
        result.push_back({std::move(zoom), reason});
    }
    return result;
}

std::vector<Suggestion> openSuggestions(const std::vector<Suggestion>& suggestions,
                                        const Zooms& zooms) {
    const TakenTimes taken(zooms);
    std::vector<model::Uuid> ids;
    ids.reserve(zooms.size());
    for (const auto& zoom : zooms)
        ids.push_back(zoom.id);
    std::ranges::sort(ids);
    std::vector<Suggestion> open;
    std::ranges::copy_if(suggestions, std::back_inserter(open), [&](const Suggestion& each) {
        return !std::ranges::binary_search(ids, each.zoom.id) && !taken.overlaps(each.zoom);
    });
    return open;
}

Zooms withSuggestions(const Zooms& zooms, const std::vector<Suggestion>& suggestions) {
    std::vector<ClickEvent> list = zooms;
    for (const auto& suggestion : suggestions)
        list.push_back(suggestion.zoom);
    std::ranges::stable_sort(list, {}, &ClickEvent::timestamp);
    return list;
}

} // namespace vantro::timeline
