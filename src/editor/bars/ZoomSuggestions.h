#pragma once

#include "editor/bars/TimelineEdits.h"
#include "media/changes/ChangeSearch.h"
#include "timeline/ZoomSuggestions.h"

#include <QObject>
#include <memory>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::bars {

/// Zooms that are proposed for the recording in the editor. They are no part of the edit until they
/// are accepted, and are forgotten with the recording. One that was accepted is proposed again when
/// that is undone. The movie is searched away from the main thread. Main thread.
///
///     idle ──search──> searching ──told, cancel, another recording──> idle
class ZoomSuggestions : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool searching READ isSearching NOTIFY stateChanged)
    Q_PROPERTY(int percent READ percent NOTIFY stateChanged) ///< of the search
    /// That can be accepted.
    Q_PROPERTY(int count READ count NOTIFY changed)

  public:
    explicit ZoomSuggestions(TimelineEdits& edits);
    ~ZoomSuggestions() override;

    bool isSearching() const { return m_state == State::searching; }
    int percent() const { return m_percent; }
    int count() const { return static_cast<int>(m_open.size()); }
    /// As zooms, in time order.
    const timeline::Zooms& zooms() const { return m_zooms; }
    /// Null where it is not open.
    const timeline::Suggestion* find(const model::Uuid& id) const;
    const std::optional<model::Uuid>& selected() const { return m_selected; }
    /// Then no zoom and no segment is.
    void select(const model::Uuid& id);
    /// Lets go of the selected one; false where there is none.
    bool deselect();

    /// Searches the recording anew, or, while that is under way, gives it up.
    Q_INVOKABLE void search();
    void cancel();
    void accept(const model::Uuid& id);
    void dismiss(const model::Uuid& id);
    Q_INVOKABLE void acceptAll();
    Q_INVOKABLE void dismissAll();

  Q_SIGNALS:
    void stateChanged();
    /// What is open or selected.
    void changed();
    /// One sentence about what has just happened.
    void told(const QString& sentence);

  private:
    enum class State { idle, searching };

    void enter(State next);
    void follow();
    void forget();
    void take(media::changes::SearchNews news);
    void finish(const std::optional<timeline::ChangesAtRests>& changes);
    void refresh();

    TimelineEdits& m_edits;
    State m_state = State::idle;
    std::optional<model::Recording> m_recording; ///< that is proposed for
    int m_percent = 0;
    int m_request = 0;                   ///< the newest search; news of others are dropped
    std::vector<timeline::Rest> m_rests; ///< that are searched at
    std::vector<timeline::Suggestion> m_all;
    std::vector<timeline::Suggestion> m_open;
    timeline::Zooms m_zooms;
    std::optional<model::Uuid> m_selected; ///< always an open one
    /// The last, and those before it that have yet to end: waiting would stall the window.
    std::vector<std::unique_ptr<media::changes::ChangeSearch>> m_searches;
};

} // namespace vantro::editor::bars
