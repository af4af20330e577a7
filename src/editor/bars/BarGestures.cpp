#include "editor/bars/BarGestures.h"

#include "base/Fatal.h"
#include "render/scene/SourceMotion.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace vantro::editor::bars {
namespace {

// A view scrolls on while a drag is held beyond its end: points at each tick.
constexpr std::chrono::milliseconds scrollTick{16};
constexpr double slowestScroll = 2;
constexpr double fastestScroll = 40;

/// Where an edge stands in `segments`.
double placeOf(const timeline::Segments& segments, const timeline::SegmentEdge& edge) {
    const auto& segment = segments[edge.segment];
    return edge.kind == timeline::SegmentEdge::Kind::start ? segment.startFraction
                                                           : segment.endFraction;
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

BarPress BarGestures::pressAt(Bar bar, double x, bool marks) const {
    switch (bar) {
    case Bar::Ruler:
        break;
    case Bar::Segments:
        return pressOnSegments(m_model, x, marks);
    case Bar::Zooms:
        return pressOnZooms(m_model, x, marks);
    }
    return pressOnGround(m_model, x, marks);
}

QString BarGestures::grip(Bar bar, double x) const {
    const auto press = pressAt(bar, x, false);
    if (press.isOnHandle())
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

void BarGestures::move(double x) {
    if (m_state == State::pressed && std::abs(x - m_press.x) >= m_press.travel())
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
    if (m_press.target == Target::zoom)
        m_edits.selectZoom(m_press.zoom.id);
    if (!m_press.isOnZoomBody() && m_press.target != Target::mark &&
        m_press.target != Target::suggestion)
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
        return m_edits.moveZoom({m_press.zooms, m_press.zoom.id, m_edits.duration()},
                                m_press.zoom.part, delta, m_press.key);
    }
    case Target::suggestion:
        return;
    case Target::edge:
        break;
    }
    // Shows the picture there, which is what the edge is placed by.
    const auto segments =
        timeline::withEdgeMoved(m_press.segments, m_press.edge, axis.unlimitedPlaceAt(x));
    m_edits.setSegments(segments, stepOf(m_press.edge.kind, m_press.key));
    seek(placeOf(segments, m_press.edge));
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
        m_edits.setSegments(m_press.segments, stepOf(m_press.edge.kind, m_press.key));
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

} // namespace vantro::editor::bars
