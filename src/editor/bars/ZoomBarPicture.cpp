#include "editor/bars/ZoomBarPicture.h"

#include "editor/bars/TimelineColumns.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
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
constexpr double hatchDistance = 7;
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
    for (const auto& row : timeline()->suggestedRows())
        paintSuggestion(painter, row);
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

QRectF ZoomBarPicture::blockOf(const timeline::ZoomRow& row) const {
    const double left = std::max(row.x, -beyond);
    const double right = std::min(row.x + std::max(row.width, thinnest), width() + beyond);
    return {left, 0, right - left, height()};
}

/// Lines from the lower left to the upper right, which stay with the time when the view is moved.
void ZoomBarPicture::paintSuggestion(QPainter& painter, const timeline::ZoomRow& row) const {
    const QRectF block = blockOf(row);
    QPainterPath outline;
    outline.addRoundedRect(block.adjusted(0.75, 0.75, -0.75, -0.75), radius, radius);
    painter.save();
    painter.setClipPath(outline, Qt::IntersectClip);
    painter.setPen(QPen(withOpacity(m_outline, row.isSelected ? 1 : 0.7), 1.5));
    const double phase = std::fmod(row.x - block.left(), hatchDistance);
    const double first = block.left() + phase - height();
    const auto lines = static_cast<int>(std::ceil((block.right() - first) / hatchDistance));
    for (int line = 0; line < lines; ++line) {
        const double x = first + line * hatchDistance;
        painter.drawLine(QPointF(x, height()), QPointF(x + height(), 0));
    }
    painter.restore();
    QPen pen(m_outline, row.isSelected ? 2.5 : 1.5, Qt::DashLine);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(outline);
}

void ZoomBarPicture::paintBlock(QPainter& painter, const timeline::ZoomRow& row) const {
    const QRectF block = blockOf(row);
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
    std::vector<std::pair<double, BarPart>> timed;
    auto& edits = timeline()->edits();
    for (const auto& zoom : edits.zooms())
        if (timeline::placeOf(zoom, edits.segments().list(), edits.duration()))
            timed.emplace_back(zoom.timestamp, BarPart{zoom.id});
    for (const auto& suggested : timeline()->proposals().zooms())
        timed.emplace_back(suggested.timestamp, BarPart{suggested.id});
    std::ranges::stable_sort(timed, {}, &std::pair<double, BarPart>::first);
    std::vector<BarPart> parts;
    parts.reserve(timed.size());
    for (const auto& [time, part] : timed)
        parts.push_back(part);
    return parts;
}

std::vector<BarPart> ZoomBarPicture::partsOf(const BarPart& part) const {
    if (part.kind != BarPart::Kind::whole)
        return {};
    if (timeline()->proposals().find(part.id) != nullptr)
        return {{part.id, BarPart::Kind::remove}};
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
    if (zoom == nullptr)
        return toldSuggestion(part);
    const auto place = timeline::placeOf(*zoom, edits.segments().list(), edits.duration());
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

std::optional<ToldPart> ZoomBarPicture::toldSuggestion(const BarPart& part) const {
    const auto& proposals = timeline()->proposals();
    const auto* suggestion = proposals.find(part.id);
    if (suggestion == nullptr)
        return {};
    auto& edits = timeline()->edits();
    const auto place =
        timeline::placeOf(suggestion->zoom, edits.segments().list(), edits.duration());
    const auto& axis = timeline()->axis();
    const double start = place ? axis.xOf(place->start) : 0;
    const double end = place ? axis.xOf(place->end) : 0;
    const bool isWhole = part.kind == BarPart::Kind::whole;
    const auto name = nameOf(*suggestion);
    return ToldPart{.name = isWhole ? name : tr("Dismiss %1").arg(name),
                    .role = QAccessible::Button,
                    .place = isWhole ? placeOf(start, std::max(end - start, thinnest)) : QRect(),
                    .isSelected = proposals.selected() == part.id};
}

void ZoomBarPicture::press(const BarPart& part) {
    auto& proposals = timeline()->proposals();
    if (proposals.find(part.id) != nullptr)
        part.kind == BarPart::Kind::remove ? proposals.dismiss(part.id) : proposals.accept(part.id);
    else if (part.kind == BarPart::Kind::remove)
        actions()->keys()->deleteZoom(part.id);
    else
        select(part);
}

void ZoomBarPicture::select(const BarPart& part) {
    if (const auto* zoom = timeline::findZoom(timeline()->edits().zooms(), part.id)) {
        const double time = zoom->timestamp;
        timeline()->edits().selectZoom(part.id);
        timeline()->reveal(time);
    } else if (const auto* suggestion = timeline()->proposals().find(part.id)) {
        const double time = suggestion->zoom.timestamp;
        timeline()->proposals().select(part.id);
        timeline()->reveal(time);
    }
}

void ZoomBarPicture::setSeconds(const BarPart& part, double seconds) {
    if (timeline()->proposals().find(part.id) != nullptr)
        return; // it has to be accepted first
    using Part = timeline::ZoomPart;
    const auto which = part.kind == BarPart::Kind::start ? Part::start
                       : part.kind == BarPart::Kind::end ? Part::end
                                                         : Part::body;
    actions()->keys()->moveZoomTo(part.id, which, seconds);
    select(part);
}

} // namespace vantro::editor::bars
