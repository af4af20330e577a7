#include "editor/bars/TimelineColumns.h"

#include "render/timing/SegmentTimeMap.h"

#include <QCoreApplication>

namespace vantro::editor::bars {
namespace {

using timeline::EdgeRow;
using timeline::GapRow;
using timeline::RulerMark;
using timeline::SegmentRow;
using timeline::ZoomRow;

/// The texts of the bars.
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(TimelineBars)
};

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

QVariant segmentName(const SegmentRow& row) {
    return Texts::tr("Segment %1, %2").arg(row.index + 1).arg(text(render::speedLabel(row.speed)));
}

QVariant edgeName(const EdgeRow& row) {
    const auto number = row.edge.segment + 1;
    switch (row.edge.kind) {
    case timeline::SegmentEdge::Kind::start:
        return Texts::tr("Start of segment %1").arg(number);
    case timeline::SegmentEdge::Kind::end:
        return Texts::tr("End of segment %1").arg(number);
    case timeline::SegmentEdge::Kind::cut:
        break;
    }
    return Texts::tr("Cut between segments %1 and %2").arg(number).arg(number + 1);
}

QVariant zoomName(const ZoomRow& row) {
    const auto time = text(timeline::rulerLabel(row.time, true));
    if (row.count > 1)
        return Texts::tr("%n zooms from %1", nullptr, row.count).arg(time);
    return Texts::tr("Zoom %1 at %2").arg(text(timeline::levelLabel(row.level)), time);
}

QVariant zoomLabel(const ZoomRow& row) {
    return row.count > 1 ? Texts::tr("%n zooms", nullptr, row.count)
                         : text(timeline::levelLabel(row.level));
}

} // namespace

std::vector<Column<RulerMark>> labelColumns() {
    return {{"startX", [](const RulerMark& row) -> QVariant { return row.x; }},
            {"label", [](const RulerMark& row) -> QVariant { return text(row.label); }}};
}

std::vector<Column<SegmentRow>> segmentColumns() {
    return {{"startX", [](const SegmentRow& row) -> QVariant { return row.x; }},
            {"extent", [](const SegmentRow& row) -> QVariant { return row.width; }},
            {"selected", [](const SegmentRow& row) -> QVariant { return row.isSelected; }},
            {"stop", [](const SegmentRow& row) -> QVariant { return row.isStop; }},
            {"badge",
             [](const SegmentRow& row) -> QVariant {
                 return row.speed == 1 ? QString() : text(render::speedLabel(row.speed));
             }},
            {"name", segmentName}};
}

std::vector<Column<GapRow>> gapColumns() {
    return {{"startX", [](const GapRow& row) -> QVariant { return row.x; }},
            {"extent", [](const GapRow& row) -> QVariant { return row.width; }}};
}

std::vector<Column<EdgeRow>> edgeColumns() {
    return {{"startX", [](const EdgeRow& row) -> QVariant { return row.x; }},
            {"side",
             [](const EdgeRow& row) -> QVariant { // of the grip, as seen from the edge
                 return row.edge.kind == timeline::SegmentEdge::Kind::start ? 1
                        : row.edge.kind == timeline::SegmentEdge::Kind::end ? -1
                                                                            : 0;
             }},
            {"stop", [](const EdgeRow& row) -> QVariant { return row.isStop; }},
            {"room", [](const EdgeRow& row) -> QVariant { return row.room; }},
            {"seconds", [](const EdgeRow& row) -> QVariant { return row.time; }},
            {"name", edgeName}};
}

std::vector<Column<ZoomRow>> zoomColumns() {
    return {
        {"startX", [](const ZoomRow& row) -> QVariant { return row.x; }},
        {"extent", [](const ZoomRow& row) -> QVariant { return row.width; }},
        {"selected", [](const ZoomRow& row) -> QVariant { return row.isSelected; }},
        {"stop", [](const ZoomRow& row) -> QVariant { return row.isStop; }},
        {"seconds", [](const ZoomRow& row) -> QVariant { return row.time; }},
        // of the handles, which only the selected one has
        {"startSeconds",
         [](const ZoomRow& row) -> QVariant { return row.isSelected ? row.start : 0; }},
        {"endSeconds", [](const ZoomRow& row) -> QVariant { return row.isSelected ? row.end : 0; }},
        {"label", zoomLabel},
        {"name", zoomName}};
}

} // namespace vantro::editor::bars
