#include "editor/bars/TimelineModel.h"

#include "editor/bars/TimelineColumns.h"
#include "render/timing/SegmentTimeMap.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>

namespace vantro::editor::bars {
namespace {

constexpr double labelWidth = 48;     // points: "120:00.5" and some air
constexpr double shortestView = 0.25; // seconds: a quarter fills the bars with single pictures
constexpr double notch = 120;         // eighths of a degree of one click of a wheel
constexpr double perNotch = 1.25;     // magnification
constexpr double pointsPerNotch = 60; // scrolled
// Of the view: where the playhead comes in again after it has left a magnified view.
constexpr double entry = 0.05;

/// Marks the row that the Tab key goes to; null where there are none.
template <typename Row>
Row* stopOf(std::vector<Row>& rows) {
    const auto selected = std::ranges::find(rows, true, &Row::isSelected);
    const auto stop = selected == rows.end() ? rows.begin() : selected;
    if (stop == rows.end())
        return nullptr;
    stop->isStop = true;
    return &*stop;
}

template <typename Row>
int stopIn(const std::vector<Row>& rows) {
    const auto stop = std::ranges::find(rows, true, &Row::isStop);
    return stop == rows.end() ? -1 : static_cast<int>(stop - rows.begin());
}

template <typename Row>
std::vector<Row> stopsIn(const std::vector<Row>& rows) {
    std::vector<Row> stops;
    std::ranges::copy_if(rows, std::back_inserter(stops), std::identity(), &Row::isStop);
    return stops;
}

} // namespace

TimelineModel::TimelineModel(TimelineEdits& edits, ZoomSuggestions& suggestions)
    : m_edits(edits)
    , m_proposals(suggestions)
    , m_segmentStops(segmentColumns())
    , m_edgeStops(edgeColumns())
    , m_zoomStops(zoomColumns())
    , m_suggestionStops(suggestionColumns()) {
    followEverything();
}

void TimelineModel::followEverything() {
    auto& state = m_edits.state();
    auto& transport = m_edits.transport();
    using app::AppState;
    connect(&state, &AppState::editableClickEventsChanged, this, &TimelineModel::showZooms);
    connect(&state, &AppState::selectedClickIDChanged, this, &TimelineModel::showZooms);
    connect(&state, &AppState::selectedSegmentIDChanged, this, &TimelineModel::showSegments);
    connect(&state, &AppState::segmentsChanged, this, &TimelineModel::showAll);
    connect(&state, &AppState::metadataChanged, this, [this] {
        setMark({});
        setAxis(m_axis.fitted());
        showAll();
    });
    connect(&state.document(), &app::EditDocument::changed, this, [this] { setHint({}); });
    connect(&m_proposals, &ZoomSuggestions::changed, this, &TimelineModel::showZooms);
    connect(&m_proposals, &ZoomSuggestions::told, this, &TimelineModel::setHint);
    connect(&transport, &PlayerTimeObserver::durationChanged, this, &TimelineModel::showAll);
    connect(&transport, &PlayerTimeObserver::progressChanged, this, &TimelineModel::followPlayhead);
}

void TimelineModel::setWidth(double width) {
    auto axis = m_axis;
    axis.width = std::max(width, 0.0);
    setAxis(axis);
}

void TimelineModel::setAxis(timeline::TimeAxis axis) {
    if (axis == m_axis)
        return;
    m_axis = axis;
    showAll();
    Q_EMIT axisChanged();
    Q_EMIT playheadChanged();
    Q_EMIT markChanged();
}

void TimelineModel::showAll() {
    showMarks();
    showSegments();
    showZooms();
    // Each handle on the bars listens to this.
    if (const std::pair content{duration(), frameSeconds()}; content != m_content) {
        m_content = content;
        Q_EMIT contentChanged();
    }
}

void TimelineModel::showMarks() {
    m_marks = timeline::rulerMarks({m_edits.segments(), m_edits.duration()}, m_axis, labelWidth);
    Q_EMIT marksShown();
}

void TimelineModel::showSegments() {
    const auto& segments = m_edits.segments();
    m_segments = timeline::segmentRows(segments, m_axis, m_edits.state().selectedSegmentID());
    const auto* stop = stopOf(m_segments);
    const auto reachable = stop ? std::optional(stop->index) : std::nullopt;
    m_gaps = timeline::gapRows(segments, m_axis);
    m_edges = timeline::edgeRows(segments, m_edits.duration(), m_axis, reachable);
    for (auto& row : m_edges)
        row.isStop = reachable && isEdgeOf(row.edge, *reachable);
    m_segmentStops.show(stopsIn(m_segments));
    m_edgeStops.show(stopsIn(m_edges));
    Q_EMIT segmentsShown();
}

void TimelineModel::showZooms() {
    m_zooms = timeline::zoomRows(m_edits.zooms(), m_edits.segments(), m_edits.duration(), m_axis,
                                 m_edits.state().selectedClickID());
    stopOf(m_zooms);
    m_suggested = timeline::zoomRows(m_proposals.zooms(), m_edits.segments(), m_edits.duration(),
                                     m_axis, m_proposals.selected());
    stopOf(m_suggested);
    m_zoomStops.show(stopsIn(m_zooms));
    m_suggestionStops.show(stopsIn(m_suggested));
    Q_EMIT zoomsShown();
}

int TimelineModel::zoomStop() const {
    return stopIn(m_zooms);
}

int TimelineModel::suggestionStop() const {
    return stopIn(m_suggested);
}

int TimelineModel::segmentStop() const {
    return stopIn(m_segments);
}

double TimelineModel::playheadX() const {
    return m_axis.xOf(m_edits.transport().progress());
}

/// A magnified view turns the page where playing leaves it.
void TimelineModel::followPlayhead() {
    const double place = m_edits.transport().progress();
    const bool isSeen = place >= m_axis.start && place <= m_axis.start + m_axis.span;
    if (!isSeen && m_edits.transport().isPlaying() && !m_edits.transport().isScrubbing())
        return scrollTo(place - entry * m_axis.span);
    Q_EMIT playheadChanged();
}

void TimelineModel::setMark(const Mark& mark) {
    if (mark == m_mark)
        return;
    m_mark = mark;
    Q_EMIT markChanged();
}

double TimelineModel::markX() const {
    const double from = m_mark.from.value_or(m_mark.to.value_or(0));
    return std::clamp(m_axis.xOf(std::min(from, m_mark.to.value_or(from))), -1.0, width() + 1);
}

double TimelineModel::markWidth() const {
    const double from = m_mark.from.value_or(m_mark.to.value_or(0));
    const double end = m_axis.xOf(std::max(from, m_mark.to.value_or(from)));
    return std::clamp(end, -1.0, width() + 1) - markX();
}

void TimelineModel::setHint(const QString& hint) {
    if (hint == m_hint)
        return;
    m_hint = hint;
    Q_EMIT hintChanged();
}

void TimelineModel::magnify(double factor, double x) {
    const double duration = m_edits.duration();
    setAxis(m_axis.magnified(factor, x, duration > 0 ? shortestView / duration : 1));
}

void TimelineModel::magnifyHere(double factor) {
    const double x = playheadX();
    magnify(factor, x >= 0 && x <= width() ? x : width() / 2);
}

void TimelineModel::scroll(double points) {
    setAxis(m_axis.scrolled(points));
}

void TimelineModel::scrollTo(double start) {
    if (m_axis.span > 0)
        scroll((start - m_axis.start) / m_axis.span * width());
}

void TimelineModel::reveal(double seconds) {
    if (m_edits.duration() > 0)
        setAxis(m_axis.revealing(std::clamp(seconds / m_edits.duration(), 0.0, 1.0)));
}

void TimelineModel::wheel(double x, double sideways, double upward) {
    if (sideways != 0)
        scroll(-sideways / notch * pointsPerNotch);
    else if (upward != 0)
        magnify(std::pow(perNotch, upward / notch), x);
}

} // namespace vantro::editor::bars
