#include "editor/bars/BarGestures.h"

#include "base/Fatal.h"
#include "render/scene/SourceMotion.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include <fmt/format.h>

namespace vantro::editor::bars {
namespace {

// Points of travel below which a press is a click.
constexpr double bodyTravel = 2;
constexpr double handleTravel = 1;
// A view scrolls on while a drag is held beyond its end: points at each tick.
constexpr std::chrono::milliseconds scrollTick{16};
constexpr double slowestScroll = 2;
constexpr double fastestScroll = 40;

template <typename Row>
const Row* rowAt(const std::vector<Row>& rows, int row) {
    return row >= 0 && static_cast<std::size_t>(row) < rows.size()
               ? &rows[static_cast<std::size_t>(row)]
               : nullptr;
}

/// Where an edge stands in `segments`.
double placeOf(const timeline::Segments& segments, const timeline::SegmentEdge& edge) {
    const auto& segment = segments[edge.segment];
    return edge.kind == timeline::SegmentEdge::Kind::start ? segment.startFraction
                                                           : segment.endFraction;
}

std::string nameOf(timeline::SegmentEdge::Kind kind) {
    return kind == timeline::SegmentEdge::Kind::cut ? QT_TRANSLATE_NOOP("Edit", "Move Cut")
                                                    : QT_TRANSLATE_NOOP("Edit", "Trim");
}

} // namespace

BarGestures::BarGestures(TimelineModel& model, TimelineEdits& edits)
    : m_model(model), m_edits(edits) {
    m_scrolling.setInterval(scrollTick);
    connect(&m_scrolling, &QTimer::timeout, this, &BarGestures::scrollOn);
}

void BarGestures::enter(State next) {
    const bool isAllowed =
        m_state == State::idle ? next != State::idle : next == State::idle || m_state < next;
    base::require(isAllowed, "gestures follow each other");
    m_state = next;
    if (next == State::idle)
        m_scrolling.stop();
}

BarGestures::Press BarGestures::pressAt(Bar bar, double x, bool marks) const {
    const auto& axis = m_model.axis();
    Press press{.bar = bar,
                .x = x,
                .place = axis.unlimitedPlaceAt(x),
                .target = marks ? Target::mark : Target::playhead,
                .zooms = m_edits.zooms(),
                .segments = m_edits.segments(),
                .playhead = m_edits.transport().progress()};
    if (bar == Bar::Zooms) {
        if (const auto hit = timeline::zoomAt(m_model.zoomRows(), press.zooms, axis,
                                              m_edits.duration(), x, m_model.handleWidth())) {
            press.zoom = *hit;
            press.target = Target::zoom;
        } else if (const auto suggestion =
                       timeline::zoomAt(m_model.suggestedRows(), m_model.proposals().zooms(), axis,
                                        m_edits.duration(), x, 0)) {
            press.zoom = *suggestion;
            press.target = Target::suggestion;
        }
    } else if (bar == Bar::Segments) {
        if (const auto edge = timeline::edgeAt(m_model.edgeRows(), x, m_model.handleWidth())) {
            press.edge = *edge;
            press.target = Target::edge;
        }
    }
    return press;
}

QString BarGestures::grip(Bar bar, double x) const {
    const auto press = pressAt(bar, x, false);
    if (press.target == Target::edge ||
        (press.target == Target::zoom && press.zoom.part != timeline::ZoomPart::body))
        return QStringLiteral("resize");
    if (press.target == Target::suggestion)
        return QStringLiteral("accept");
    return press.target == Target::zoom ? QStringLiteral("move") : QString();
}

void BarGestures::press(Bar bar, double x, bool marks) {
    cancel();
    m_model.setHint({});
    m_press = pressAt(bar, x, marks);
    m_press.key = newGestureKey();
    enter(State::pressed);
    if (m_press.target != Target::playhead)
        return;
    if (bar == Bar::Segments)
        m_edits.selectSegmentAt(m_model.axis().placeAt(x));
    else if (bar == Bar::Zooms)
        m_edits.state().setSelectedClickID({});
    begin();
    step(x);
}

double BarGestures::travel() const {
    const bool isHandle =
        m_press.target == Target::edge ||
        (m_press.target == Target::zoom && m_press.zoom.part != timeline::ZoomPart::body);
    return isHandle ? handleTravel : bodyTravel;
}

void BarGestures::move(double x) {
    if (m_state == State::pressed && std::abs(x - m_press.x) >= travel())
        begin();
    if (m_state == State::dragging)
        follow(x);
}

void BarGestures::follow(double x) {
    m_x = x;
    step(x);
    const bool isOutside = x < 0 || x > m_model.width();
    if (!isOutside || m_model.axis().showsAll())
        m_scrolling.stop();
    else if (!m_scrolling.isActive())
        m_scrolling.start();
}

void BarGestures::scrollOn() {
    const double beyond = m_x < 0 ? m_x : m_x - m_model.width();
    const double points = std::min(slowestScroll + std::abs(beyond), fastestScroll);
    m_model.scroll(std::copysign(points, beyond));
    step(m_x);
}

void BarGestures::begin() {
    enter(State::dragging);
    const bool isBody =
        m_press.target == Target::zoom && m_press.zoom.part == timeline::ZoomPart::body;
    if (m_press.target == Target::zoom)
        m_edits.selectZoom(m_press.zoom.id);
    if (!isBody && m_press.target != Target::mark && m_press.target != Target::suggestion)
        m_edits.transport().setScrubbing(true);
}

void BarGestures::step(double x) {
    const auto& axis = m_model.axis();
    switch (m_press.target) {
    case Target::playhead:
        return seek(axis.placeAt(x));
    case Target::mark:
        m_edits.clearSelection();
        return m_model.setMark(
            {.from = std::clamp(m_press.place, 0.0, 1.0), .to = axis.placeAt(x)});
    case Target::zoom: {
        const double delta = (axis.unlimitedPlaceAt(x) - m_press.place) * m_edits.duration();
        return moveZoom({m_press.zooms, m_press.zoom.id, m_edits.duration()}, m_press.zoom.part,
                        delta, m_press.key);
    }
    case Target::suggestion:
        return;
    case Target::edge:
        break;
    }
    // Shows the picture there, which is what the edge is placed by.
    const auto segments =
        timeline::withEdgeMoved(m_press.segments, m_press.edge, axis.unlimitedPlaceAt(x));
    m_edits.setSegments(segments, {nameOf(m_press.edge.kind), m_press.key});
    seek(placeOf(segments, m_press.edge));
}

void BarGestures::moveZoom(const timeline::ZoomDrag& drag, timeline::ZoomPart part, double seconds,
                           const std::string& key) {
    switch (part) {
    case timeline::ZoomPart::body:
        return m_edits.setZooms(timeline::moved(drag, seconds),
                                {QT_TRANSLATE_NOOP("Edit", "Move Zoom"), key});
    case timeline::ZoomPart::start:
        return m_edits.setZooms(timeline::withStartMoved(drag, seconds),
                                {QT_TRANSLATE_NOOP("Edit", "Change Lead-In"), key});
    case timeline::ZoomPart::end:
        return m_edits.setZooms(timeline::withEndMoved(drag, seconds),
                                {QT_TRANSLATE_NOOP("Edit", "Change Lead-Out"), key});
    }
}

void BarGestures::release(double x) {
    if (m_state == State::idle)
        return;
    if (m_state == State::pressed)
        click();
    else
        step(x);
    if (m_state == State::dragging && m_press.target == Target::edge)
        seek(m_press.playhead);
    enter(State::idle);
    m_edits.transport().setScrubbing(false);
    m_press = {};
}

void BarGestures::click() {
    const double place = m_model.axis().placeAt(m_press.x);
    switch (m_press.target) {
    case Target::zoom:
        return m_edits.selectZoom(m_press.zoom.id);
    case Target::suggestion:
        m_model.proposals().accept(m_press.zoom.id);
        return m_edits.selectZoom(m_press.zoom.id);
    case Target::mark:
        return m_model.setMark({});
    case Target::edge:
        m_edits.selectSegmentAt(place);
        return seek(place);
    case Target::playhead:
        return;
    }
}

void BarGestures::cancel() {
    if (m_state == State::idle)
        return;
    if (m_state == State::dragging)
        takeBack();
    enter(State::idle);
    m_edits.transport().setScrubbing(false);
    m_press = {};
}

void BarGestures::takeBack() {
    switch (m_press.target) {
    case Target::mark:
        return m_model.setMark({});
    case Target::zoom:
        return m_edits.setZooms(m_press.zooms,
                                {QT_TRANSLATE_NOOP("Edit", "Move Zoom"), m_press.key});
    case Target::edge:
        m_edits.setSegments(m_press.segments, {nameOf(m_press.edge.kind), m_press.key});
        return seek(m_press.playhead);
    case Target::playhead:
        return seek(m_press.playhead);
    case Target::suggestion:
        return;
    }
}

void BarGestures::doubleClick(Bar bar, double x) {
    const auto press = pressAt(bar, x, false);
    const auto* metadata = m_edits.state().metadata();
    if (bar != Bar::Zooms || press.target == Target::zoom || press.target == Target::suggestion ||
        metadata == nullptr)
        return;
    cancel();
    const double place = m_model.axis().placeAt(x);
    const double time = place * m_edits.duration();
    if (render::segmentAt(m_edits.segments().list(), place) == nullptr)
        return m_model.setHint(tr("This part is cut out, so a zoom would not be seen."));
    const auto& area = metadata->captureRect;
    const auto center = render::pointerAt(metadata->cursorPositions, time)
                            .value_or(model::Point{area.width / 2, area.height / 2});
    const auto added = timeline::withZoomAt(press.zooms, time, center, m_edits.duration());
    if (!added)
        return m_model.setHint(tr("There is no room for a zoom here."));
    m_edits.setZooms(added->zooms, {QT_TRANSLATE_NOOP("Edit", "Add Zoom")});
    m_edits.selectZoom(added->id);
}

void BarGestures::seek(double place) {
    m_edits.transport().seek(std::clamp(place, 0.0, 1.0));
}

void BarGestures::selectZoom() {
    if (const auto* zoom = rowAt(m_model.zoomRows(), m_model.zoomStop()))
        m_edits.selectZoom(zoom->id);
}

void BarGestures::selectSegment() {
    if (const auto* segment = rowAt(m_model.segmentRows(), m_model.segmentStop()))
        m_edits.selectSegment(segment->id);
}

void BarGestures::stepZoom(int by) {
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

void BarGestures::stepSegment(int by) {
    const auto* shown = rowAt(m_model.segmentRows(), m_model.segmentStop());
    const auto& segments = m_edits.segments();
    const auto next = shown == nullptr ? -1 : static_cast<std::ptrdiff_t>(shown->index) + by;
    if (next < 0 || next >= std::ssize(segments))
        return;
    const auto& segment = segments[static_cast<std::size_t>(next)];
    m_edits.selectSegment(segment.id);
    m_model.reveal((segment.startFraction + segment.endFraction) / 2 * m_edits.duration());
}

void BarGestures::setZoom(ZoomPart part, double seconds) {
    if (const auto* shown = rowAt(m_model.zoomRows(), m_model.zoomStop()))
        moveZoomTo(shown->id, static_cast<timeline::ZoomPart>(part), seconds);
}

void BarGestures::moveZoomTo(const model::Uuid& id, timeline::ZoomPart part, double seconds) {
    const auto* zoom = timeline::findZoom(m_edits.zooms(), id);
    if (zoom == nullptr || !isIdle())
        return;
    const double now = part == timeline::ZoomPart::body    ? zoom->timestamp
                       : part == timeline::ZoomPart::start ? zoom->timestamp - zoom->startOffset
                                                           : zoom->timestamp + zoom->endOffset;
    m_edits.selectZoom(id);
    // Repeated keys are one step.
    moveZoom({m_edits.zooms(), id, m_edits.duration()}, part, seconds - now,
             fmt::format("{} {}", id.toString(), static_cast<int>(part)));
}

void BarGestures::setEdge(int row, double seconds) {
    int stop = 0;
    for (const auto& shown : m_model.edgeRows())
        if (shown.isStop && stop++ == row)
            return moveEdgeTo(shown.edge, seconds);
}

void BarGestures::moveEdgeTo(timeline::SegmentEdge edge, double seconds) {
    if (!(m_edits.duration() > 0) || !isIdle())
        return;
    const auto key = m_edits.segments()[edge.segment].id.toString() + " edge";
    m_edits.setSegments(
        timeline::withEdgeMoved(m_edits.segments(), edge, seconds / m_edits.duration()),
        {nameOf(edge.kind), key});
}

void BarGestures::deleteZoom() {
    if (const auto* zoom = rowAt(m_model.zoomRows(), m_model.zoomStop()))
        deleteZoom(zoom->id);
}

void BarGestures::deleteZoom(const model::Uuid& id) {
    m_edits.setZooms(timeline::withoutZoom(m_edits.zooms(), id),
                     {QT_TRANSLATE_NOOP("Edit", "Delete Zoom")});
    m_edits.state().setSelectedClickID({});
}

/// The open one that many places on; nothing beyond the ends.
std::optional<model::Uuid> BarGestures::suggestionBeside(const model::Uuid& id, int by) const {
    const auto& all = m_model.proposals().zooms().list();
    const auto here = std::ranges::find(all, id, &model::ClickEvent::id);
    const auto at = here - all.begin() + by;
    if (here == all.end() || at < 0 || at >= std::ssize(all))
        return {};
    return all[static_cast<std::size_t>(at)].id;
}

void BarGestures::stepSuggestion(int by) {
    const auto* shown = rowAt(m_model.suggestedRows(), m_model.suggestionStop());
    const auto next = shown == nullptr ? std::nullopt : suggestionBeside(shown->id, by);
    if (!next)
        return;
    m_model.proposals().select(*next);
    m_model.reveal(m_model.proposals().find(*next)->zoom.timestamp);
}

void BarGestures::answerSuggestion(void (ZoomSuggestions::*answer)(const model::Uuid&)) {
    const auto* shown = rowAt(m_model.suggestedRows(), m_model.suggestionStop());
    if (shown == nullptr)
        return;
    const auto next = suggestionBeside(shown->id, 1);
    (m_model.proposals().*answer)(model::Uuid(shown->id)); // the row goes with it
    if (next)
        m_model.proposals().select(*next);
}

void BarGestures::acceptSuggestion() {
    answerSuggestion(&ZoomSuggestions::accept);
}

void BarGestures::dismissSuggestion() {
    answerSuggestion(&ZoomSuggestions::dismiss);
}

} // namespace vantro::editor::bars
