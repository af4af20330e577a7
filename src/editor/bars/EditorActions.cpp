#include "editor/bars/EditorActions.h"

#include <QCoreApplication>
#include <algorithm>

namespace vantro::editor::bars {
namespace {

constexpr double arrowStep = 1; // seconds

/// The name of a step in the user's language; the catalog lists them under "Edit".
QString translated(const std::string& step) {
    return QCoreApplication::translate("Edit", step.c_str());
}

} // namespace

EditorActions::EditorActions(app::AppState& state, PlayerTimeObserver& transport, bool stripYields)
    : m_state(state), m_transport(transport), m_strip(state, stripYields) {
    connect(&state.document(), &app::EditDocument::changed, this, [this] {
        m_edits.dropStaleSelection();
        Q_EMIT changed();
    });
    for (const auto signal :
         {&app::AppState::selectedClickIDChanged, &app::AppState::selectedSegmentIDChanged})
        connect(&state, signal, this, &EditorActions::changed);
    connect(&m_timeline, &TimelineModel::markChanged, this, &EditorActions::changed);
    connect(&m_suggestions, &ZoomSuggestions::changed, this, &EditorActions::changed);
}

QString EditorActions::undoName() const {
    return canUndo() ? tr("Undo %1").arg(translated(m_state.document().undoName())) : tr("Undo");
}

QString EditorActions::redoName() const {
    return canRedo() ? tr("Redo %1").arg(translated(m_state.document().redoName())) : tr("Redo");
}

bool EditorActions::canDelete() const {
    return m_state.selectedClickID() || m_suggestions.selected() || m_timeline.mark().isRange() ||
           (m_state.selectedSegmentID() && m_edits.segments().size() > 1);
}

bool EditorActions::canRecompute() const {
    return m_state.metadata() != nullptr && !m_state.metadata()->clickEvents.empty();
}

bool EditorActions::hasHandmadeZooms() const {
    return m_state.metadata() != nullptr &&
           timeline::hasHandmade(m_edits.zooms(), m_state.metadata()->clickEvents);
}

void EditorActions::undo() {
    m_gestures.cancel();
    if (canUndo())
        m_state.document().undo();
}

void EditorActions::redo() {
    m_gestures.cancel();
    if (canRedo())
        m_state.document().redo();
}

void EditorActions::split() {
    const auto result = timeline::split(m_edits.segments(), m_transport.progress());
    if (!result)
        return m_timeline.setHint(tr("There is nothing to split here."));
    m_edits.setSegments(result->segments, {QT_TRANSLATE_NOOP("Edit", "Split")});
    m_edits.selectSegment(result->right);
}

void EditorActions::deleteSelected() {
    m_gestures.cancel();
    if (const auto zoom = m_state.selectedClickID()) {
        m_edits.setZooms(timeline::withoutEvent(m_edits.zooms(), *zoom),
                         {QT_TRANSLATE_NOOP("Edit", "Delete Zoom")});
        m_state.setSelectedClickID({});
    } else if (const auto suggestion = m_suggestions.selected()) {
        m_suggestions.dismiss(*suggestion);
    } else if (m_timeline.mark().isRange()) {
        cutMark();
    } else if (const auto segment = m_state.selectedSegmentID();
               segment && m_edits.segments().size() > 1) {
        m_edits.setSegments(timeline::withoutSegment(m_edits.segments(), *segment),
                            {QT_TRANSLATE_NOOP("Edit", "Delete Segment")});
        m_state.setSelectedSegmentID({});
    }
}

void EditorActions::cutMark() {
    const auto mark = m_timeline.mark();
    if (!mark.from || !mark.to)
        return;
    const auto before = m_edits.segments();
    applyCut(timeline::withRangeCut(before, *mark.from, *mark.to, m_edits.frame()),
             QT_TRANSLATE_NOOP("Edit", "Cut Range"));
    if (!before.isSameAs(m_edits.segments()))
        m_timeline.setMark({});
}

void EditorActions::applyCut(const std::expected<timeline::Segments, timeline::CutRefusal>& cut,
                             const char* name) {
    if (cut)
        m_edits.setSegments(*cut, {name});
    else
        show(cut.error());
}

void EditorActions::show(timeline::CutRefusal refusal) {
    switch (refusal) {
    case timeline::CutRefusal::nothingMarked:
        return m_timeline.setHint(tr("Nothing of the film lies there."));
    case timeline::CutRefusal::nothingLeft:
        return m_timeline.setHint(tr("Nothing would be left of the film."));
    case timeline::CutRefusal::pieceTooShort:
        return m_timeline.setHint(tr("A piece would be left that is too short to be kept."));
    }
}

void EditorActions::trimStartToPlayhead() {
    applyCut(timeline::withStartAt(m_edits.segments(), m_transport.progress(), m_edits.frame()),
             QT_TRANSLATE_NOOP("Edit", "Trim Start"));
}

void EditorActions::trimEndToPlayhead() {
    applyCut(timeline::withEndAt(m_edits.segments(), m_transport.progress(), m_edits.frame()),
             QT_TRANSLATE_NOOP("Edit", "Trim End"));
}

void EditorActions::markStart() {
    auto mark = m_timeline.mark();
    mark.from = m_transport.progress();
    if (mark.to && *mark.to <= *mark.from)
        mark.to.reset();
    if (mark.to)
        m_edits.clearSelection();
    m_timeline.setMark(mark);
}

void EditorActions::markEnd() {
    auto mark = m_timeline.mark();
    mark.to = m_transport.progress();
    if (mark.from && *mark.to <= *mark.from)
        mark.from.reset();
    if (mark.from)
        m_edits.clearSelection();
    m_timeline.setMark(mark);
}

void EditorActions::recomputeZooms() {
    if (!canRecompute())
        return;
    m_gestures.cancel();
    m_edits.setZooms(model::freshEdit(*m_state.metadata()).clickEvents,
                     {QT_TRANSLATE_NOOP("Edit", "Recompute Zooms")});
}

bool EditorActions::letGo() {
    if (!m_gestures.isIdle()) {
        m_gestures.cancel();
        return true;
    }
    if (const auto suggestion = m_suggestions.selected()) {
        m_suggestions.dismiss(*suggestion);
        return true;
    }
    if (m_timeline.isMarked()) {
        m_timeline.setMark({});
        return true;
    }
    const bool isSelected = m_state.selectedClickID() || m_state.selectedSegmentID();
    m_edits.clearSelection();
    return isSelected;
}

bool EditorActions::keyPressed(int key, int modifiers, const QString& text, bool isRepeat) {
    const int held = modifiers & ~Qt::KeypadModifier;
    if (key == Qt::Key_B && held == Qt::ControlModifier) {
        split();
        return true;
    }
    if (isRepeat && (key == Qt::Key_Space || key == Qt::Key_Left || key == Qt::Key_Right))
        return false;
    switch (key) {
    case Qt::Key_Space:
        m_transport.togglePlayPause();
        return true;
    case Qt::Key_Left:
        m_transport.skipBackward(arrowStep);
        return true;
    case Qt::Key_Right:
        m_transport.skipForward(arrowStep);
        return true;
    default:
        break;
    }
    if ((held & ~Qt::ShiftModifier) != 0)
        return false;
    return plainKeyPressed(key) || letterPressed(text.toLower());
}

bool EditorActions::plainKeyPressed(int key) {
    switch (key) {
    case Qt::Key_Home:
        m_transport.goToStart();
        return true;
    case Qt::Key_End:
        m_transport.goToEnd();
        return true;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        deleteSelected();
        return true;
    case Qt::Key_Escape:
        return letGo();
    default:
        return false;
    }
}

/// By what is typed, so that the keys are where the keyboard's layout has them.
bool EditorActions::letterPressed(const QString& letter) {
    struct Entry {
        QStringView letter;
        void (*act)(EditorActions&);
    };
    static constexpr Entry entries[] = {
        {u",", [](auto& self) { self.m_transport.skipBackward(self.m_edits.frameSeconds()); }},
        {u".", [](auto& self) { self.m_transport.skipForward(self.m_edits.frameSeconds()); }},
        {u"[", [](auto& self) { self.trimStartToPlayhead(); }},
        {u"]", [](auto& self) { self.trimEndToPlayhead(); }},
        {u"s", [](auto& self) { self.split(); }},
        {u"i", [](auto& self) { self.markStart(); }},
        {u"o", [](auto& self) { self.markEnd(); }},
        {u"+", [](auto& self) { self.m_timeline.magnifyHere(2); }},
        {u"-", [](auto& self) { self.m_timeline.magnifyHere(0.5); }},
        {u"0", [](auto& self) { self.m_timeline.fit(); }},
        {u"?", [](auto& self) { Q_EMIT self.helpWanted(); }},
    };
    const auto* found = std::ranges::find(entries, letter, &Entry::letter);
    if (found == std::end(entries))
        return false;
    found->act(*this);
    return true;
}

} // namespace vantro::editor::bars
