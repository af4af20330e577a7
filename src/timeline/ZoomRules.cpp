#include "timeline/ZoomRules.h"

#include "render/timing/SegmentTimeMap.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

namespace vantro::timeline {
namespace {

using model::ClickEvent;
using List = std::vector<ClickEvent>;
using View = std::span<const ClickEvent>;

double startOf(const ClickEvent& zoom) {
    return zoom.timestamp - zoom.startOffset;
}

double endOf(const ClickEvent& zoom) {
    return zoom.timestamp + zoom.endOffset;
}

/// Between what stands before and behind a zoom.
struct Room {
    double start = 0;
    double end = 0;
};

/// The room at `time` between the nearest active zooms, the one with `id` left out.
Room roomAround(View zooms, double time, const model::Uuid& id, double duration) {
    Room room{0, duration};
    const ClickEvent* previous = nullptr;
    const ClickEvent* next = nullptr;
    bool passed = false; // of events at the same time, list order tells which comes first
    for (const auto& event : zooms) {
        if (event.id == id) {
            passed = true;
            continue;
        }
        if (model::isSilenced(event))
            continue;
        const bool isBefore = event.timestamp < time || (event.timestamp == time && !passed);
        if (isBefore && (previous == nullptr || event.timestamp >= previous->timestamp))
            previous = &event;
        if (!isBefore && (next == nullptr || event.timestamp < next->timestamp))
            next = &event;
    }
    if (previous != nullptr)
        room.start = endOf(*previous);
    if (next != nullptr)
        room.end = startOf(*next);
    return room;
}

Room roomAround(const Zooms& zooms, const ClickEvent& zoom, double duration) {
    return roomAround(zooms.list(), zoom.timestamp, zoom.id, duration);
}

/// Silenced clicks within the zoom: they are only points on its way.
bool belongsTo(const ClickEvent& event, const ClickEvent& zoom) {
    return model::isSilenced(event) && event.timestamp > zoom.timestamp &&
           event.timestamp <= endOf(zoom);
}

/// A lead limited to `room`, which wins over the shortest one. Where the room is negative because
/// neighbors overlap already, a lead never grows.
double limitedLead(double wanted, double room, double now) {
    return std::min(std::max(wanted, shortestLead), std::max(room, std::min(now, shortestLead)));
}

double leadIn(const ClickEvent& zoom, double wanted, const Room& room) {
    const double most = std::min(zoom.timestamp, zoom.timestamp - room.start);
    return limitedLead(wanted, most, zoom.startOffset);
}

double leadOut(const ClickEvent& zoom, double wanted, const Room& room, double duration) {
    const double most = std::min(duration - zoom.timestamp, room.end - zoom.timestamp);
    return limitedLead(wanted, most, zoom.endOffset);
}

/// `zooms` with the one of this id changed by `change`.
template <typename Change>
Zooms withChanged(const Zooms& zooms, const model::Uuid& id, const Change& change) {
    List list = zooms;
    for (auto& event : list)
        if (event.id == id)
            change(event);
    return list;
}

/// A value that can be meant.
std::optional<double> given(const std::optional<double>& value) {
    return value && std::isfinite(*value) ? value : std::nullopt;
}

/// `zoom`, which stands in `room`, with the values that are given.
ClickEvent withValues(const ClickEvent& zoom, const ZoomValues& values, const Room& room,
                      double duration) {
    ClickEvent result = zoom;
    if (const auto level = given(values.level))
        result.zoomLevel = std::clamp(*level, lowestLevel, highestLevel);
    if (const auto start = given(values.leadIn); start && *start != zoom.startOffset)
        result.startOffset = leadIn(zoom, *start, room);
    if (const auto end = given(values.leadOut); end && *end != zoom.endOffset)
        result.endOffset = leadOut(zoom, *end, room, duration);
    if (values.center && std::isfinite(values.center->x) && std::isfinite(values.center->y)) {
        result.x = values.center->x;
        result.y = values.center->y;
    }
    return result;
}

void sortByTime(List& list) {
    std::ranges::stable_sort(list, {}, &ClickEvent::timestamp);
}

} // namespace

const ClickEvent* findZoom(const Zooms& zooms, const model::Uuid& id) {
    const auto found = std::ranges::find(zooms, id, &ClickEvent::id);
    return found == zooms.end() ? nullptr : &*found;
}

Zooms moved(const ZoomDrag& drag, double delta) {
    const ClickEvent* zoom = findZoom(drag.before, drag.id);
    if (zoom == nullptr || !std::isfinite(delta) || delta == 0)
        return drag.before;
    const Room room = roomAround(drag.before, *zoom, drag.duration);
    const double now = zoom->timestamp;
    const double latest = std::min(drag.duration - zoom->endOffset, room.end - zoom->endOffset);
    const double earliest = std::max(zoom->startOffset, room.start + zoom->startOffset);
    const double time = std::clamp(now + delta, std::min(earliest, now), std::max(latest, now));
    List list = drag.before;
    for (auto& event : list) {
        if (event.id == drag.id)
            event.timestamp = time;
        else if (belongsTo(event, *zoom))
            event.timestamp += time - now;
    }
    sortByTime(list);
    return list;
}

Zooms withStartMoved(const ZoomDrag& drag, double delta) {
    const ClickEvent* zoom = findZoom(drag.before, drag.id);
    if (zoom == nullptr || !std::isfinite(delta) || delta == 0)
        return drag.before;
    const double lead =
        leadIn(*zoom, zoom->startOffset - delta, roomAround(drag.before, *zoom, drag.duration));
    return withChanged(drag.before, drag.id, [&](auto& event) { event.startOffset = lead; });
}

Zooms withEndMoved(const ZoomDrag& drag, double delta) {
    const ClickEvent* zoom = findZoom(drag.before, drag.id);
    if (zoom == nullptr || !std::isfinite(delta) || delta == 0)
        return drag.before;
    const double lead = leadOut(*zoom, zoom->endOffset + delta,
                                roomAround(drag.before, *zoom, drag.duration), drag.duration);
    return withChanged(drag.before, drag.id, [&](auto& event) { event.endOffset = lead; });
}

Zooms changed(const Zooms& zooms, const model::Uuid& id, const ZoomValues& values,
              double duration) {
    const ClickEvent* found = findZoom(zooms, id);
    if (found == nullptr)
        return zooms;
    const ClickEvent zoom =
        withValues(*found, values, roomAround(zooms, *found, duration), duration);
    if (zoom == *found)
        return zooms;
    return withChanged(zooms, id, [&](auto& event) { event = zoom; });
}

Zooms allChanged(const Zooms& zooms, const ZoomValues& values, double duration) {
    ZoomValues common = values;
    common.center.reset();
    List list = zooms;
    std::vector<ClickEvent*> active;
    for (auto& event : list)
        if (!model::isSilenced(event))
            active.push_back(&event);
    std::ranges::stable_sort(active, {}, &ClickEvent::timestamp);
    for (std::size_t i = 0; i < active.size(); ++i) {
        const Room room{.start = i > 0 ? endOf(*active[i - 1]) : 0,
                        .end = i + 1 < active.size() ? startOf(*active[i + 1]) : duration};
        *active[i] = withValues(*active[i], common, room, duration);
    }
    return list == zooms.list() ? zooms : Zooms(std::move(list));
}

std::optional<AddedZoom> withZoomAt(const Zooms& zooms, double time, model::Point center,
                                    double duration) {
    if (!std::isfinite(time))
        return {};
    ClickEvent zoom{.x = center.x, .y = center.y, .timestamp = time};
    const Room room = roomAround(zooms.list(), time, zoom.id, duration);
    zoom.startOffset = std::min(zoom.startOffset, time - std::max(room.start, 0.0));
    zoom.endOffset = std::min(zoom.endOffset, std::min(room.end, duration) - time);
    if (!(zoom.startOffset >= shortestLead) || !(zoom.endOffset >= shortestLead))
        return {};
    List list = zooms;
    list.push_back(zoom);
    sortByTime(list);
    return AddedZoom{std::move(list), zoom.id};
}

Zooms withoutZoom(const Zooms& zooms, const model::Uuid& id) {
    const ClickEvent* zoom = findZoom(zooms, id);
    if (zoom == nullptr)
        return zooms;
    List list = zooms;
    std::erase_if(list, [&, gone = *zoom](const auto& event) {
        return event.id == id || belongsTo(event, gone);
    });
    return list;
}

Zooms withoutEvent(const Zooms& zooms, const model::Uuid& id) {
    List list = zooms;
    std::erase_if(list, [&](const auto& event) { return event.id == id; });
    return list;
}

bool hasHandmade(const Zooms& zooms, const Zooms& recordedClicks) {
    return std::ranges::any_of(
        zooms, [&](const auto& event) { return findZoom(recordedClicks, event.id) == nullptr; });
}

std::optional<ZoomPlace>
placeOf(const ClickEvent& zoom, std::span<const model::TimelineSegment> segments, double duration) {
    const double length = std::max(duration, 0.001);
    if (model::isSilenced(zoom) || segments.empty() ||
        render::segmentAt(segments, zoom.timestamp / length) == nullptr)
        return {};
    const double start = std::max(startOf(zoom) / length, segments.front().startFraction);
    const double end = std::min(endOf(zoom) / length, segments.back().endFraction);
    if (!(start < end))
        return {};
    return ZoomPlace{std::clamp(start, 0.0, 1.0), std::clamp(end, 0.0, 1.0)};
}

std::string levelLabel(double level) {
    return fmt::format("{:.1f}x", level);
}

} // namespace vantro::timeline
