#include "editor/bars/TimelineEdits.h"

#include "render/timing/SegmentTimeMap.h"

#include <algorithm>

#include <fmt/format.h>

namespace vantro::editor::bars {

double TimelineEdits::duration() const {
    const auto* metadata = m_state.metadata();
    if (metadata == nullptr)
        return 0;
    return m_transport.duration() > 0 ? m_transport.duration() : metadata->endTime;
}

double TimelineEdits::frameSeconds() const {
    const auto* metadata = m_state.metadata();
    return 1.0 / static_cast<double>(std::max<std::int64_t>(metadata ? metadata->frameRate : 1, 1));
}

double TimelineEdits::frame() const {
    return duration() > 0 ? frameSeconds() / duration() : 1;
}

void TimelineEdits::setZooms(timeline::Zooms zooms, app::EditDocument::Step step) {
    auto edit = m_state.document().edit();
    edit.clickEvents = std::move(zooms);
    m_state.document().apply(std::move(edit), std::move(step));
}

void TimelineEdits::setSegments(timeline::Segments segments, app::EditDocument::Step step) {
    auto edit = m_state.document().edit();
    edit.segments = std::move(segments);
    m_state.document().apply(std::move(edit), std::move(step));
}

void TimelineEdits::moveZoom(const timeline::ZoomDrag& drag, timeline::ZoomPart part,
                             double seconds, const std::string& key) {
    switch (part) {
    case timeline::ZoomPart::body:
        return setZooms(timeline::moved(drag, seconds),
                        {QT_TRANSLATE_NOOP("Edit", "Move Zoom"), key});
    case timeline::ZoomPart::start:
        return setZooms(timeline::withStartMoved(drag, seconds),
                        {QT_TRANSLATE_NOOP("Edit", "Change Lead-In"), key});
    case timeline::ZoomPart::end:
        return setZooms(timeline::withEndMoved(drag, seconds),
                        {QT_TRANSLATE_NOOP("Edit", "Change Lead-Out"), key});
    }
}

void TimelineEdits::selectZoom(const model::Uuid& id) {
    m_state.setSelectedSegmentID({});
    m_state.setSelectedClickID(id);
}

void TimelineEdits::selectSegment(const model::Uuid& id) {
    m_state.setSelectedClickID({});
    m_state.setSelectedSegmentID(id);
}

void TimelineEdits::selectSegmentAt(double place) {
    const auto* segment = render::segmentAt(segments().list(), place);
    m_state.setSelectedClickID({});
    m_state.setSelectedSegmentID(segment ? std::optional(segment->id) : std::nullopt);
}

void TimelineEdits::clearSelection() {
    m_state.setSelectedClickID({});
    m_state.setSelectedSegmentID({});
}

void TimelineEdits::dropStaleSelection() {
    if (const auto& id = m_state.selectedClickID(); id && !timeline::findZoom(zooms(), *id))
        m_state.setSelectedClickID({});
    if (const auto& id = m_state.selectedSegmentID();
        id && std::ranges::find(segments(), *id, &model::TimelineSegment::id) == segments().end())
        m_state.setSelectedSegmentID({});
}

app::EditDocument::Step stepOf(timeline::SegmentEdge::Kind edge, const std::string& key) {
    return {edge == timeline::SegmentEdge::Kind::cut ? QT_TRANSLATE_NOOP("Edit", "Move Cut")
                                                     : QT_TRANSLATE_NOOP("Edit", "Trim"),
            key};
}

std::string newGestureKey() {
    static int count = 0;
    return fmt::format("gesture {}", ++count);
}

} // namespace vantro::editor::bars
