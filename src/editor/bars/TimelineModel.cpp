#include "editor/bars/TimelineModel.h"

#include "editor/bars/TimelineColumns.h"
#include "render/timing/SegmentTimeMap.h"

#include <algorithm>
#include <cmath>

namespace vantro::editor::bars {
namespace {

constexpr double labelWidth = 48;     // points: "120:00.5" and some air
constexpr double shortestView = 0.25; // seconds: a quarter fills the bars with single pictures
constexpr double notch = 120;         // eighths of a degree of one click of a wheel
constexpr double perNotch = 1.25;     // magnification
constexpr double pointsPerNotch = 60; // scrolled
// Points of width for each row where they stand densest.
constexpr double pointsPerZoom = 10;
constexpr double pointsPerEdge = 15;
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
    return static_cast<int>(std::ranges::find(rows, true, &Row::isStop) - rows.begin());
}

} // namespace

TimelineModel::TimelineModel(TimelineEdits& edits)
    : m_edits(edits)
    , m_labels(labelColumns())
    , m_segments(segmentColumns())
    , m_gaps(gapColumns())
    , m_edges(edgeColumns())
    , m_zooms(zoomColumns()) {
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
        prepareItems();
        showAll();
    });
    connect(&state.document(), &app::EditDocument::changed, this, [this] { setHint({}); });
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
    const bool isResized = axis.width != m_axis.width;
    m_axis = axis;
    if (isResized)
        prepareItems();
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

/// Makes the items that magnifying will need, so that no step of the wheel has to.
void TimelineModel::prepareItems() {
    const auto most = [this](double pointsEach, std::size_t count) {
        return std::min(static_cast<std::size_t>(width() / pointsEach), count);
    };
    m_labels.prepare(most(labelWidth, SIZE_MAX));
    m_zooms.prepare(most(pointsPerZoom, m_edits.zooms().size()));
    m_edges.prepare(most(pointsPerEdge, 2 * m_edits.segments().size()));
}

void TimelineModel::showMarks() {
    m_ticks = timeline::rulerMarks({m_edits.segments(), m_edits.duration()}, m_axis, labelWidth);
    auto labels = m_ticks;
    std::erase_if(labels, [](const auto& mark) { return !mark.isMajor; });
    m_labels.show(std::move(labels));
    Q_EMIT marksChanged();
}

void TimelineModel::showSegments() {
    const auto& segments = m_edits.segments();
    auto rows = timeline::segmentRows(segments, m_axis, m_edits.state().selectedSegmentID());
    const auto* stop = stopOf(rows);
    const auto reachable = stop ? std::optional(stop->index) : std::nullopt;
    auto edges = timeline::edgeRows(segments, m_edits.duration(), m_axis, reachable);
    for (auto& row : edges)
        row.isStop = reachable && isEdgeOf(row.edge, *reachable);
    m_segments.show(std::move(rows));
    m_gaps.show(timeline::gapRows(segments, m_axis));
    m_edges.show(std::move(edges));
    Q_EMIT stopsChanged();
}

void TimelineModel::showZooms() {
    auto rows = timeline::zoomRows(m_edits.zooms(), m_edits.segments(), m_edits.duration(), m_axis,
                                   m_edits.state().selectedClickID());
    stopOf(rows);
    m_zooms.show(std::move(rows));
    Q_EMIT stopsChanged();
}

int TimelineModel::zoomStop() const {
    return stopIn(m_zooms.rows());
}

int TimelineModel::segmentStop() const {
    return stopIn(m_segments.rows());
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
