#include "editor/bars/ZoomBarPicture.h"

#include "editor/bars/TimelineColumns.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <algorithm>

namespace vantro::editor::bars {
namespace {

// Points.
constexpr double radius = 4;
constexpr double thinnest = 2; // a thinner block would not be seen
constexpr double widthForOutline = 4;
constexpr double widthForLabel = 44;
// Of the button that deletes a block, which is an item of the selected one.
constexpr double widthForDelete = 88;
constexpr double deleteSize = 18;
constexpr double beyond = 16; // outside of the bar, where blocks that are cut off may end

QColor withOpacity(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(color.alphaF() * opacity));
    return color;
}

} // namespace

void ZoomBarPicture::follow(TimelineModel& timeline) {
    connect(&timeline, &TimelineModel::zoomsShown, this, &ZoomBarPicture::refresh);
}

void ZoomBarPicture::paint(QPainter& painter) {
    auto font = QGuiApplication::font();
    font.setPixelSize(m_textSize);
    painter.setFont(font);
    const timeline::ZoomRow* selected = nullptr;
    for (const auto& row : timeline()->zoomRows()) {
        if (row.isSelected)
            selected = &row;
        else
            paintBlock(painter, row);
    }
    if (selected != nullptr)
        paintBlock(painter, *selected);
}

void ZoomBarPicture::paintBlock(QPainter& painter, const timeline::ZoomRow& row) const {
    const double left = std::max(row.x, -beyond);
    const double right = std::min(row.x + std::max(row.width, thinnest), width() + beyond);
    const QRectF block(left, 0, right - left, height());
    painter.setPen(Qt::NoPen);
    painter.setBrush(withOpacity(m_fill, row.isSelected ? 0.5 : 0.35));
    painter.drawRoundedRect(block, radius, radius);
    if (block.width() > widthForOutline) {
        const double line = row.isSelected ? 2.5 : 1.5;
        const double inset = line / 2;
        painter.setPen(QPen(m_outline, line));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(block.adjusted(inset, inset, -inset, -inset), radius - inset,
                                radius - inset);
    }
    if (row.width >= widthForLabel) {
        const QFontMetricsF metrics(painter.font());
        const auto label = labelOf(row);
        painter.setPen(withOpacity(m_ink, 0.7));
        painter.drawText(
            QPointF(std::round(row.x + (row.width - metrics.horizontalAdvance(label)) / 2),
                    std::round((height() + metrics.ascent() - metrics.descent()) / 2)),
            label);
    }
}

std::vector<BarPart> ZoomBarPicture::listedParts() const {
    std::vector<BarPart> parts;
    auto& edits = timeline()->edits();
    for (const auto& zoom : edits.zooms())
        if (timeline::placeOf(zoom, edits.segments().list(), edits.duration()))
            parts.push_back({zoom.id});
    return parts;
}

std::vector<BarPart> ZoomBarPicture::partsOf(const BarPart& part) const {
    if (part.kind != BarPart::Kind::whole)
        return {};
    return {{part.id, BarPart::Kind::start},
            {part.id, BarPart::Kind::end},
            {part.id, BarPart::Kind::remove}};
}

std::optional<BarPart> ZoomBarPicture::parentOf(const BarPart& part) const {
    return part.kind == BarPart::Kind::whole ? std::nullopt : std::optional(BarPart{part.id});
}

std::optional<ToldPart> ZoomBarPicture::told(const BarPart& part) const {
    if (!actions())
        return {};
    auto& edits = timeline()->edits();
    const auto* zoom = timeline::findZoom(edits.zooms(), part.id);
    const auto place = zoom == nullptr
                           ? std::nullopt
                           : timeline::placeOf(*zoom, edits.segments().list(), edits.duration());
    if (!place)
        return {};
    const auto& axis = timeline()->axis();
    const double start = axis.xOf(place->start);
    const double end = axis.xOf(place->end);
    const double handle = TimelineModel::handleWidth();
    ToldPart result{.name = nameOf(*zoom),
                    .seconds = zoom->timestamp,
                    .place = placeOf(start, std::max(end - start, thinnest)),
                    .isSelected = edits.state().selectedClickID() == zoom->id};
    if (part.kind == BarPart::Kind::start) {
        result.name = tr("Start of %1").arg(result.name);
        result.seconds = place->start * edits.duration();
        result.place = placeOf(start, handle);
    } else if (part.kind == BarPart::Kind::end) {
        result.name = tr("End of %1").arg(result.name);
        result.seconds = place->end * edits.duration();
        result.place = placeOf(end - handle, handle);
    } else if (part.kind == BarPart::Kind::remove) {
        result.name = tr("Delete %1").arg(result.name);
        result.role = QAccessible::Button;
        result.seconds = {};
        const bool isShown = result.isSelected && end - start >= widthForDelete;
        result.place = isShown ? placeOf(end - handle - 1 - deleteSize, deleteSize) : QRect();
    }
    return result;
}

void ZoomBarPicture::press(const BarPart& part) {
    if (part.kind == BarPart::Kind::remove)
        actions()->gestures()->deleteZoom(part.id);
    else
        select(part);
}

void ZoomBarPicture::select(const BarPart& part) {
    if (const auto* zoom = timeline::findZoom(timeline()->edits().zooms(), part.id)) {
        const double time = zoom->timestamp;
        timeline()->edits().selectZoom(part.id);
        timeline()->reveal(time);
    }
}

void ZoomBarPicture::setSeconds(const BarPart& part, double seconds) {
    using Part = timeline::ZoomPart;
    const auto which = part.kind == BarPart::Kind::start ? Part::start
                       : part.kind == BarPart::Kind::end ? Part::end
                                                         : Part::body;
    actions()->gestures()->moveZoomTo(part.id, which, seconds);
    select(part);
}

} // namespace vantro::editor::bars
