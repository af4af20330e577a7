#include "editor/bars/TimelineColumns.h"

#include "editor/bars/BarParts.h"
#include "render/timing/SegmentTimeMap.h"
#include "timeline/TimeAxis.h"
#include "ui/Sentences.h"

#include <QCoreApplication>

namespace vantro::editor::bars {
namespace {

using timeline::EdgeRow;
using timeline::SegmentRow;
using timeline::ZoomRow;

/// The texts of the bars.
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(TimelineBars)
};

QString keyOf(const EdgeRow& row) {
    switch (row.edge.kind) {
    case timeline::SegmentEdge::Kind::start:
        return BarPart{row.id, BarPart::Kind::start}.key();
    case timeline::SegmentEdge::Kind::end:
        return BarPart{row.id, BarPart::Kind::end}.key();
    case timeline::SegmentEdge::Kind::cut:
        break;
    }
    return BarPart{row.id, BarPart::Kind::cut}.key();
}

QString zoomName(double level, double time) {
    return Texts::tr("Zoom %1 at %2")
        .arg(ui::localNumber(timeline::levelLabel(level)),
             ui::localNumber(timeline::rulerLabel(time, true)));
}

} // namespace

QString labelOf(const ZoomRow& row) {
    return row.count > 1 ? Texts::tr("%n zooms", nullptr, row.count)
                         : ui::localNumber(timeline::levelLabel(row.level));
}

QString badgeOf(const SegmentRow& row) {
    return ui::localNumber(render::speedLabel(row.speed));
}

QString nameOf(const model::ClickEvent& zoom) {
    return zoomName(zoom.zoomLevel, zoom.timestamp);
}

QString nameOf(const timeline::Suggestion& suggestion) {
    const auto time = ui::localNumber(timeline::rulerLabel(suggestion.zoom.timestamp, true));
    return suggestion.reason == timeline::Suggestion::Reason::change
               ? Texts::tr("Suggested zoom at %1: the picture changed").arg(time)
               : Texts::tr("Suggested zoom at %1: the pointer stayed").arg(time);
}

QString nameOf(const model::TimelineSegment& segment, std::size_t index) {
    return Texts::tr("Segment %1, %2")
        .arg(index + 1)
        .arg(ui::localNumber(render::speedLabel(segment.speed)));
}

QString nameOf(const timeline::SegmentEdge& edge) {
    const auto number = edge.segment + 1;
    switch (edge.kind) {
    case timeline::SegmentEdge::Kind::start:
        return Texts::tr("Start of segment %1").arg(number);
    case timeline::SegmentEdge::Kind::end:
        return Texts::tr("End of segment %1").arg(number);
    case timeline::SegmentEdge::Kind::cut:
        break;
    }
    return Texts::tr("Cut between segments %1 and %2").arg(number).arg(number + 1);
}

std::vector<Column<SegmentRow>> segmentColumns() {
    return {{"startX", [](const SegmentRow& row) -> QVariant { return row.x; }},
            {"extent", [](const SegmentRow& row) -> QVariant { return row.width; }},
            {"part", [](const SegmentRow& row) -> QVariant { return BarPart{row.id}.key(); }}};
}

std::vector<Column<EdgeRow>> edgeColumns() {
    return {{"startX", [](const EdgeRow& row) -> QVariant { return row.x; }},
            {"seconds", [](const EdgeRow& row) -> QVariant { return row.time; }},
            {"part", [](const EdgeRow& row) -> QVariant { return keyOf(row); }}};
}

std::vector<Column<ZoomRow>> zoomColumns() {
    return {{"startX", [](const ZoomRow& row) -> QVariant { return row.x; }},
            {"extent", [](const ZoomRow& row) -> QVariant { return row.width; }},
            {"selected", [](const ZoomRow& row) -> QVariant { return row.isSelected; }},
            {"seconds", [](const ZoomRow& row) -> QVariant { return row.time; }},
            {"startSeconds", [](const ZoomRow& row) -> QVariant { return row.start; }},
            {"endSeconds", [](const ZoomRow& row) -> QVariant { return row.end; }},
            {"name", [](const ZoomRow& row) -> QVariant { return zoomName(row.level, row.time); }},
            {"part", [](const ZoomRow& row) -> QVariant { return BarPart{row.id}.key(); }}};
}

std::vector<Column<ZoomRow>> suggestionColumns() {
    return {{"startX", [](const ZoomRow& row) -> QVariant { return row.x; }},
            {"extent", [](const ZoomRow& row) -> QVariant { return row.width; }},
            {"part", [](const ZoomRow& row) -> QVariant { return BarPart{row.id}.key(); }}};
}

} // namespace vantro::editor::bars
