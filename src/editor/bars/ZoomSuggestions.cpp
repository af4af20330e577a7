#include "editor/bars/ZoomSuggestions.h"

#include "base/Fatal.h"

#include <algorithm>
#include <utility>

namespace vantro::editor::bars {
namespace {

// Of the recording's width and height: what a zoom to there shows well.
constexpr double watchedPart = 0.3;
// Seconds. Longer rests are reading, and what changes then is rarely what was done.
constexpr double longestWatch = 8;
constexpr double slowestAnswer = 0.5; // of a program to a click just before the pointer leaves

std::vector<media::changes::Watch> watchesOf(const std::vector<timeline::Rest>& rests,
                                             model::Size area) {
    std::vector<media::changes::Watch> watches;
    watches.reserve(rests.size());
    for (const auto& rest : rests)
        watches.push_back({.from = rest.start,
                           .until = std::min(rest.end + slowestAnswer, rest.start + longestWatch),
                           .part = {.x = rest.place.x / area.width - watchedPart / 2,
                                    .y = rest.place.y / area.height - watchedPart / 2,
                                    .width = watchedPart,
                                    .height = watchedPart}});
    return watches;
}

} // namespace

ZoomSuggestions::ZoomSuggestions(TimelineEdits& edits) : m_edits(edits) {
    using app::AppState;
    auto& state = edits.state();
    for (const auto signal : {&AppState::metadataChanged, &AppState::recordingPathChanged})
        connect(&state, signal, this, &ZoomSuggestions::follow);
    connect(&state, &AppState::editableClickEventsChanged, this, &ZoomSuggestions::refresh);
    connect(&state, &AppState::segmentsChanged, this, &ZoomSuggestions::refresh);
    connect(&state, &AppState::selectedClickIDChanged, this, [this] {
        if (m_edits.state().selectedClickID())
            deselect();
    });
    connect(&state, &AppState::selectedSegmentIDChanged, this, [this] {
        if (m_edits.state().selectedSegmentID())
            deselect();
    });
}

ZoomSuggestions::~ZoomSuggestions() {
    for (const auto& search : m_searches)
        search->stop();
}

void ZoomSuggestions::enter(State next) {
    base::require(next != m_state, "a search for zooms begins once and ends once");
    m_state = next;
    m_percent = 0;
    Q_EMIT stateChanged();
}

const timeline::Suggestion* ZoomSuggestions::find(const model::Uuid& id) const {
    const auto found = std::ranges::find(
        m_open, id, [](const timeline::Suggestion& each) { return each.zoom.id; });
    return found == m_open.end() ? nullptr : &*found;
}

void ZoomSuggestions::select(const model::Uuid& id) {
    const auto* suggestion = find(id);
    if (suggestion == nullptr || m_selected == id)
        return;
    m_edits.clearSelection();
    m_selected = id;
    Q_EMIT changed();
    Q_EMIT told(suggestion->reason == timeline::Suggestion::Reason::change
                    ? tr("Suggested since the picture changed where the pointer was.")
                    : tr("Suggested since the pointer went there and stayed."));
}

bool ZoomSuggestions::deselect() {
    if (!std::exchange(m_selected, {}))
        return false;
    Q_EMIT changed();
    return true;
}

void ZoomSuggestions::search() {
    if (isSearching())
        return cancel();
    const auto& recording = m_edits.state().document().recording();
    if (!recording)
        return;
    forget();
    const auto& metadata = recording->metadata();
    const model::Size area{metadata.captureRect.width, metadata.captureRect.height};
    if (metadata.cursorPositions.empty())
        return Q_EMIT told(
            tr("Nothing to suggest: this desktop did not tell where the pointer was."));
    m_rests = timeline::restsOf(metadata.cursorPositions, area);
    if (m_rests.empty())
        return Q_EMIT told(tr("Nothing to suggest: the pointer never came to rest."));
    enter(State::searching);
    m_searches.push_back(std::make_unique<media::changes::ChangeSearch>(
        media::MovieReference{recording->movie()}, watchesOf(m_rests, area),
        [this, request = m_request](auto news) {
            // The searches end before this does.
            QMetaObject::invokeMethod(
                this,
                [this, request, news = std::move(news)]() mutable {
                    if (request == m_request)
                        take(std::move(news));
                },
                Qt::QueuedConnection);
        }));
}

void ZoomSuggestions::cancel() {
    ++m_request;
    for (const auto& search : m_searches)
        search->stop();
    std::erase_if(m_searches, [](const auto& search) { return search->hasEnded(); });
    if (isSearching())
        enter(State::idle);
}

/// Saved as a project it stays the same recording.
void ZoomSuggestions::follow() {
    const auto& recording = m_edits.state().document().recording();
    if (recording && m_recording && recording->isSameAs(*m_recording))
        return;
    m_recording = recording;
    forget();
}

void ZoomSuggestions::forget() {
    cancel();
    m_rests.clear();
    dismissAll();
}

void ZoomSuggestions::take(media::changes::SearchNews news) {
    if (const auto* progress = std::get_if<media::changes::SearchProgress>(&news)) {
        m_percent = progress->percent;
        Q_EMIT stateChanged();
    } else if (auto* changes = std::get_if<media::changes::FoundChanges>(&news)) {
        finish(std::move(*changes));
    } else {
        finish({});
    }
}

void ZoomSuggestions::finish(const std::optional<timeline::ChangesAtRests>& changes) {
    enter(State::idle);
    m_all = timeline::suggestedZooms(m_rests, changes, m_edits.zooms(), m_edits.duration());
    m_rests.clear();
    refresh();
    if (m_open.empty())
        Q_EMIT told(tr("Nothing to suggest: nothing changed where the pointer rested."));
    else if (!changes)
        Q_EMIT told(tr("The picture could not be searched; these are the places where the pointer "
                       "stayed."));
    else
        Q_EMIT told(tr("Hatched zooms are suggestions: click one to accept it."));
}

void ZoomSuggestions::accept(const model::Uuid& id) {
    const auto* suggestion = find(id);
    if (suggestion == nullptr)
        return;
    m_edits.setZooms(timeline::withSuggestions(m_edits.zooms(), {*suggestion}),
                     {QT_TRANSLATE_NOOP("Edit", "Accept Suggested Zoom")});
}

void ZoomSuggestions::acceptAll() {
    if (!m_open.empty())
        m_edits.setZooms(timeline::withSuggestions(m_edits.zooms(), m_open),
                         {QT_TRANSLATE_NOOP("Edit", "Accept Suggested Zooms")});
}

void ZoomSuggestions::dismiss(const model::Uuid& id) {
    std::erase_if(m_all, [&](const auto& each) { return each.zoom.id == id; });
    refresh();
}

void ZoomSuggestions::dismissAll() {
    m_all.clear();
    refresh();
}

/// Of those that the film does not show, none is open.
void ZoomSuggestions::refresh() {
    if (m_all.empty() && m_open.empty())
        return;
    m_open = timeline::openSuggestions(m_all, m_edits.zooms());
    std::erase_if(m_open, [this](const auto& each) {
        return !timeline::placeOf(each.zoom, m_edits.segments().list(), m_edits.duration());
    });
    std::vector<model::ClickEvent> zooms;
    zooms.reserve(m_open.size());
    for (const auto& each : m_open)
        zooms.push_back(each.zoom);
    m_zooms = std::move(zooms);
    if (m_selected && find(*m_selected) == nullptr)
        m_selected.reset();
    Q_EMIT changed();
}

} // namespace vantro::editor::bars
