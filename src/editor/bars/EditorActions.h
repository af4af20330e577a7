#pragma once

#include "editor/bars/BarKeys.h"
#include "editor/bars/StripModel.h"

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::bars {

/// What the keyboard, menus and buttons of the editor do to the edit, with the time line that they
/// share. Holds no truth of its own. Main thread.
class EditorActions : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(vantro::editor::bars::TimelineModel* timeline READ timeline CONSTANT)
    Q_PROPERTY(vantro::editor::bars::BarGestures* gestures READ gestures CONSTANT)
    Q_PROPERTY(vantro::editor::bars::BarKeys* keys READ keys CONSTANT)
    Q_PROPERTY(vantro::editor::bars::StripModel* strip READ strip CONSTANT)
    Q_PROPERTY(vantro::editor::bars::ZoomSuggestions* suggestions READ suggestions CONSTANT)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY changed)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY changed)
    /// "Undo Move Zoom"; without a step "Undo".
    Q_PROPERTY(QString undoName READ undoName NOTIFY changed)
    Q_PROPERTY(QString redoName READ redoName NOTIFY changed)
    Q_PROPERTY(bool canDelete READ canDelete NOTIFY changed)
    /// There are clicks to make zooms of.
    Q_PROPERTY(bool canRecompute READ canRecompute NOTIFY changed)
    /// Starting anew would drop zooms that were made by hand.
    Q_PROPERTY(bool hasHandmadeZooms READ hasHandmadeZooms NOTIFY changed)

  public:
    /// `stripYields`: the recording's strip is made only while a processor is idle.
    EditorActions(app::AppState& state, PlayerTimeObserver& transport, bool stripYields = true);

    TimelineModel* timeline() { return &m_timeline; }
    StripModel* strip() { return &m_strip; }
    BarGestures* gestures() { return &m_gestures; }
    BarKeys* keys() { return &m_keys; }
    ZoomSuggestions* suggestions() { return &m_suggestions; }
    bool canUndo() const { return m_state.document().canUndo(); }
    bool canRedo() const { return m_state.document().canRedo(); }
    QString undoName() const;
    QString redoName() const;
    bool canDelete() const;
    bool canRecompute() const;
    bool hasHandmadeZooms() const;

    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();
    /// The segment under the playhead becomes two.
    Q_INVOKABLE void split();
    /// The selected zoom or suggested zoom, else the marked range, else the selected segment.
    Q_INVOKABLE void deleteSelected();
    /// The film begins, or ends, at the playhead.
    Q_INVOKABLE void trimStartToPlayhead();
    Q_INVOKABLE void trimEndToPlayhead();
    Q_INVOKABLE void markStart();
    Q_INVOKABLE void markEnd();
    /// All zooms as a new recording has them.
    Q_INVOKABLE void recomputeZooms();
    /// The suggested zoom is dismissed, or the mark goes first, then what is selected; false where
    /// there was nothing.
    Q_INVOKABLE bool letGo();

    /// A key that nothing with the keyboard wanted for itself; whether it did something here.
    Q_INVOKABLE bool keyPressed(int key, int modifiers, const QString& text, bool isRepeat);

  Q_SIGNALS:
    void changed();
    /// The keys are to be explained.
    void helpWanted();

  private:
    bool plainKeyPressed(int key);
    bool letterPressed(const QString& letter);
    void show(timeline::CutRefusal refusal);
    void applyCut(const std::expected<timeline::Segments, timeline::CutRefusal>& cut,
                  const char* name);
    void cutMark();

    app::AppState& m_state;
    PlayerTimeObserver& m_transport;
    TimelineEdits m_edits{m_state, m_transport};
    ZoomSuggestions m_suggestions{m_edits};
    TimelineModel m_timeline{m_edits, m_suggestions};
    StripModel m_strip;
    BarGestures m_gestures{m_timeline, m_edits};
    BarKeys m_keys{m_timeline, m_edits, m_gestures};
};

} // namespace vantro::editor::bars
