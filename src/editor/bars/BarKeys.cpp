#include "editor/bars/BarKeys.h"

#include <algorithm>

#include <fmt/format.h>

namespace vantro::editor::bars {
namespace {

template <typename Row>
const Row* rowAt(const std::vector<Row>& rows, int row) {
    return row >= 0 && static_cast<std::size_t>(row) < rows.size()
               ? &rows[static_cast<std::size_t>(row)]
               : nullptr;
}

} // namespace

void BarKeys::selectZoom() {
    if (const auto* zoom = rowAt(m_model.zoomRows(), m_model.zoomStop()))
        m_edits.selectZoom(zoom->id);
}

void BarKeys::selectSegment() {
    if (const auto* segment = rowAt(m_model.segmentRows(), m_model.segmentStop()))
        m_edits.selectSegment(segment->id);
}

void BarKeys::stepZoom(int by) {
    const auto* shown = rowAt(m_model.zoomRows(), m_model.zoomStop());
    if (shown == nullptr)
        return;
    std::vector<const model::ClickEvent*> blocks;
    std::ptrdiff_t at = 0;
    for (const auto& zoom : m_edits.zooms()) {
        if (zoom.id == shown->id)
            at = std::ssize(blocks);
        if (timeline::placeOf(zoom, m_edits.segments().list(), m_edits.duration()))
            blocks.push_back(&zoom);
    }
    at += by;
    if (at < 0 || at >= std::ssize(blocks))
        return;
    const auto& next = *blocks[static_cast<std::size_t>(at)];
    m_edits.selectZoom(next.id);
    m_model.reveal(next.timestamp);
}

void BarKeys::stepSegment(int by) {
    const auto* shown = rowAt(m_model.segmentRows(), m_model.segmentStop());
    const auto& segments = m_edits.segments();
    const auto next = shown == nullptr ? -1 : static_cast<std::ptrdiff_t>(shown->index) + by;
    if (next < 0 || next >= std::ssize(segments))
        return;
    const auto& segment = segments[static_cast<std::size_t>(next)];
    m_edits.selectSegment(segment.id);
    m_model.reveal((segment.startFraction + segment.endFraction) / 2 * m_edits.duration());
}

void BarKeys::setZoom(ZoomPart part, double seconds) {
    if (const auto* shown = rowAt(m_model.zoomRows(), m_model.zoomStop()))
        moveZoomTo(shown->id, static_cast<timeline::ZoomPart>(part), seconds);
}

void BarKeys::moveZoomTo(const model::Uuid& id, timeline::ZoomPart part, double seconds) {
    const auto* zoom = timeline::findZoom(m_edits.zooms(), id);
    if (zoom == nullptr || !m_gestures.isIdle())
        return;
    const double now = part == timeline::ZoomPart::body    ? zoom->timestamp
                       : part == timeline::ZoomPart::start ? zoom->timestamp - zoom->startOffset
                                                           : zoom->timestamp + zoom->endOffset;
    m_edits.selectZoom(id);
    // Repeated keys are one step.
    m_edits.moveZoom({m_edits.zooms(), id, m_edits.duration()}, part, seconds - now,
                     fmt::format("{} {}", id.toString(), static_cast<int>(part)));
}

void BarKeys::setEdge(int row, double seconds) {
    int stop = 0;
    for (const auto& shown : m_model.edgeRows())
        if (shown.isStop && stop++ == row)
            return moveEdgeTo(shown.edge, seconds);
}

void BarKeys::moveEdgeTo(timeline::SegmentEdge edge, double seconds) {
    if (!(m_edits.duration() > 0) || !m_gestures.isIdle())
        return;
    const auto key = m_edits.segments()[edge.segment].id.toString() + " edge";
    m_edits.setSegments(
        timeline::withEdgeMoved(m_edits.segments(), edge, seconds / m_edits.duration()),
        stepOf(edge.kind, key));
}

void BarKeys::deleteZoom() {
    if (const auto* zoom = rowAt(m_model.zoomRows(), m_model.zoomStop()))
        deleteZoom(zoom->id);
}

void BarKeys::deleteZoom(const model::Uuid& id) {
    m_edits.setZooms(timeline::withoutZoom(m_edits.zooms(), id),
                     {QT_TRANSLATE_NOOP("Edit", "Delete Zoom")});
    m_edits.state().setSelectedClickID({});
}

/// The open one that many places on; nothing beyond the ends.
std::optional<model::Uuid> BarKeys::suggestionBeside(const model::Uuid& id, int by) const {
    const auto& all = m_model.proposals().zooms().list();
    const auto here = std::ranges::find(all, id, &model::ClickEvent::id);
    const auto at = here - all.begin() + by;
    if (here == all.end() || at < 0 || at >= std::ssize(all))
        return {};
    return all[static_cast<std::size_t>(at)].id;
}

void BarKeys::stepSuggestion(int by) {
    const auto* shown = rowAt(m_model.suggestedRows(), m_model.suggestionStop());
    const auto next = shown == nullptr ? std::nullopt : suggestionBeside(shown->id, by);
    if (!next)
        return;
    m_model.proposals().select(*next);
    m_model.reveal(m_model.proposals().find(*next)->zoom.timestamp);
}

void BarKeys::answerSuggestion(void (ZoomSuggestions::*answer)(const model::Uuid&)) {
    const auto* shown = rowAt(m_model.suggestedRows(), m_model.suggestionStop());
    if (shown == nullptr)
        return;
    const auto next = suggestionBeside(shown->id, 1);
    (m_model.proposals().*answer)(model::Uuid(shown->id)); // the row goes with it
    if (next)
        m_model.proposals().select(*next);
}

void BarKeys::acceptSuggestion() {
    answerSuggestion(&ZoomSuggestions::accept);
}

void BarKeys::dismissSuggestion() {
    answerSuggestion(&ZoomSuggestions::dismiss);
}

} // namespace vantro::editor::bars
