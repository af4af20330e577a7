#include "editor/bars/SegmentBarPicture.h"

#include "editor/bars/TimelineColumns.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace vantro::editor::bars {
namespace {

using Kind = timeline::SegmentEdge::Kind;

// Points.
constexpr double radius = 4;
constexpr double widthForMargin = 4; // wider pieces leave half a point to each neighbor
constexpr double widthForBadge = 44;
constexpr double roomForHalo = 8; // to the next edge
constexpr double roomForGrip = 20;
constexpr double gripHeight = 14;
constexpr double beyond = 16; // outside of the bar, where pieces that are cut off may end

BarPart::Kind kindOf(Kind kind) {
    switch (kind) {
    case Kind::start:
        return BarPart::Kind::start;
    case Kind::end:
        return BarPart::Kind::end;
    case Kind::cut:
        break;
    }
    return BarPart::Kind::cut;
}

} // namespace

void SegmentBarPicture::follow(TimelineModel& timeline) {
    connect(&timeline, &TimelineModel::segmentsShown, this, &SegmentBarPicture::refresh);
}

void SegmentBarPicture::paint(QPainter& painter) {
    auto font = QGuiApplication::font();
    font.setPixelSize(m_textSize);
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_gap);
    for (const auto& row : timeline()->gapRows()) {
        const double left = std::max(row.x, -beyond);
        const double right = std::min(row.x + row.width, width() + beyond);
        painter.drawRoundedRect(QRectF(left, 0, right - left, height()), radius, radius);
    }
    for (const auto& row : timeline()->segmentRows())
        paintPiece(painter, row);
    for (const auto& row : timeline()->edgeRows())
        paintEdge(painter, row);
}

void SegmentBarPicture::paintPiece(QPainter& painter, const timeline::SegmentRow& row) const {
    const double margin = row.width > widthForMargin ? 0.5 : 0;
    const double left = std::max(row.x, -beyond) + margin;
    const double right = std::min(row.x + std::max(row.width, 1.0), width() + beyond) - margin;
    const QRectF piece(left, 0, right - left, height());
    painter.setPen(Qt::NoPen);
    painter.setBrush(row.isSelected ? m_keptSelected : m_kept);
    painter.drawRoundedRect(piece, radius, radius);
    if (row.isSelected) {
        painter.setPen(QPen(m_outline, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(piece.adjusted(1, 1, -1, -1), radius - 1, radius - 1);
    }
    if (row.speed != 1 && row.width >= widthForBadge)
        paintBadge(painter, row);
}

void SegmentBarPicture::paintBadge(QPainter& painter, const timeline::SegmentRow& row) const {
    const QFontMetricsF metrics(painter.font());
    const auto label = badgeOf(row);
    QRectF pill(0, 0, metrics.horizontalAdvance(label) + 10, metrics.height() + 4);
    pill.moveCenter({row.x + row.width / 2, height() / 2});
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_badge);
    painter.drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);
    painter.setPen(m_ink);
    painter.drawText(QPointF(std::round(pill.x() + 5),
                             std::round((height() + metrics.ascent() - metrics.descent()) / 2)),
                     label);
}

void SegmentBarPicture::paintEdge(QPainter& painter, const timeline::EdgeRow& row) const {
    const bool isCut = row.edge.kind == Kind::cut;
    const double side = row.edge.kind == Kind::start ? 1 : row.edge.kind == Kind::end ? -1 : 0;
    const double extent = std::min(isCut ? 2.0 : 5.0, row.room / 4);
    const QRectF bar(row.x + (side - 1) * extent / 2, 0, extent, height());
    const double corner = isCut ? 0 : 2;
    painter.setPen(Qt::NoPen);
    if (row.room >= roomForHalo) {
        painter.setBrush(m_ground);
        painter.drawRoundedRect(bar.adjusted(-1, 0, 1, 0), corner + 1, corner + 1);
    }
    painter.setBrush(m_handle);
    painter.drawRoundedRect(bar, corner, corner);
    if (row.room >= roomForGrip) {
        QRectF grip(0, 0, isCut ? 4 : 1, gripHeight);
        grip.moveCenter({row.x + side * 2.5, height() / 2});
        painter.setBrush(isCut ? m_handle : m_ground);
        painter.drawRoundedRect(grip, std::min(grip.width() / 2, 2.0), 2);
    }
}

std::vector<BarPart> SegmentBarPicture::listedParts() const {
    std::vector<BarPart> parts;
    const auto& segments = timeline()->edits().segments();
    for (const auto& segment : segments)
        parts.push_back({segment.id});
    for (const auto& edge : timeline::edgesOf(segments))
        parts.push_back({segments[edge.segment].id, kindOf(edge.kind)});
    return parts;
}

std::optional<timeline::SegmentEdge> SegmentBarPicture::edgeOf(const BarPart& part) const {
    const auto& segments = timeline()->edits().segments();
    for (const auto& edge : timeline::edgesOf(segments))
        if (segments[edge.segment].id == part.id && kindOf(edge.kind) == part.kind)
            return edge;
    return {};
}

std::optional<ToldPart> SegmentBarPicture::told(const BarPart& part) const {
    if (!actions())
        return {};
    auto& edits = timeline()->edits();
    const auto& axis = timeline()->axis();
    const double handle = TimelineModel::handleWidth();
    if (part.kind != BarPart::Kind::whole) {
        const auto edge = edgeOf(part);
        if (!edge)
            return {};
        return ToldPart{.name = nameOf(*edge),
                        .seconds = edge->place * edits.duration(),
                        .place = placeOf(axis.xOf(edge->place) - handle / 2, handle)};
    }
    const auto& segments = edits.segments();
    const auto found = std::ranges::find(segments, part.id, &model::TimelineSegment::id);
    if (found == segments.end())
        return {};
    const double start = axis.xOf(found->startFraction);
    return ToldPart{.name = nameOf(*found, static_cast<std::size_t>(found - segments.begin())),
                    .role = QAccessible::ListItem,
                    .place = placeOf(start, axis.xOf(found->endFraction) - start),
                    .isSelected = edits.state().selectedSegmentID() == part.id};
}

void SegmentBarPicture::select(const BarPart& part) {
    auto& edits = timeline()->edits();
    const auto& segments = edits.segments();
    const auto found = std::ranges::find(segments, part.id, &model::TimelineSegment::id);
    if (found == segments.end())
        return;
    const auto edge = edgeOf(part);
    const double place = edge ? edge->place : (found->startFraction + found->endFraction) / 2;
    edits.selectSegment(part.id);
    timeline()->reveal(place * edits.duration());
}

void SegmentBarPicture::setSeconds(const BarPart& part, double seconds) {
    if (const auto edge = edgeOf(part))
        actions()->keys()->moveEdgeTo(*edge, seconds);
    select(part);
}

} // namespace vantro::editor::bars
