#pragma once

#include "model/Project.h"

#include <QObject>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace vantro::app {

/// The recording in the editor, its edit and its name, with the steps that led there.
///
/// A step holds an Edit, which shares what it did not change; samples are never copied. Without a
/// recording the edit holds the choices that the next recording begins with, and there are no
/// steps. Main thread.
class EditDocument : public QObject {
    Q_OBJECT

  public:
    struct Content {
        std::string name; ///< base name of exports and projects
        std::optional<model::Recording> recording;
        model::Edit edit;
    };

    /// What a step of editing is called, in English, and what it may be joined with.
    struct Step {
        std::string name; ///< "Move Zoom": a menu says "Undo Move Zoom"
        /// Consecutive steps of one key that is not empty count as one: give each drag a key of its
        /// own. Where they come back to the edit that they began with, there is no step.
        std::string mergeKey = {};
    };

    /// What steps may take beyond the edit itself, bytes; the earliest are forgotten then. One that
    /// changed 2,000 clicks takes 150 kB, one that moved a slider 300 B.
    static constexpr std::size_t mostBytes = 64'000'000;

    explicit EditDocument(std::string name)
        : m_content{.name = std::move(name), .recording = {}, .edit = {}} {}

    const Content& content() const { return m_content; }
    const std::string& name() const { return m_content.name; }
    const std::optional<model::Recording>& recording() const { return m_content.recording; }
    const model::Edit& edit() const { return m_content.edit; }
    /// Name, recording and edit; nothing without a recording.
    std::optional<model::Project> project() const;

    /// Begins with an unmodified project and no steps.
    void open(model::Project project);
    /// Goes on without a recording; `choices` are those for the next one.
    void close(model::Edit choices);
    void rename(std::string name);

    /// An equal edit is no step.
    void apply(model::Edit edit, Step step);
    bool canUndo() const { return !m_past.empty(); }
    bool canRedo() const { return !m_future.empty(); }
    /// What `undo` and `redo` would do; empty where there is nothing.
    std::string undoName() const { return canUndo() ? m_past.back().name : std::string(); }
    std::string redoName() const { return canRedo() ? m_future.back().name : std::string(); }
    void undo();
    void redo();

    /// Tells that `written` is on disk. The recording lies where that says from now on; what was
    /// edited while it was being written counts as modified.
    void saved(const model::Project& written);
    /// Whether name or edit differ from what was last saved or opened, or, for a recording that
    /// never was, from what it began with.
    bool isModified() const;

  Q_SIGNALS:
    /// Something has changed: the content, the steps or what is saved. Comes once for each call,
    /// after it has taken effect.
    void changed(const vantro::app::EditDocument::Content& before);

  private:
    /// A step, and the edit on its other side: before it in the past, after it in the future.
    struct Done {
        model::Edit edit;
        std::string name;
        std::size_t bytes = 0; ///< that only this step keeps
    };

    void remember(const model::Edit& next, std::string name);
    void forgetLastStep();
    void replace(Content content);
    void forgetSteps();

    Content m_content;
    std::string m_savedName;
    model::Edit m_savedEdit;
    std::deque<Done> m_past;    ///< the last step at the back
    std::vector<Done> m_future; ///< the next step at the back
    std::size_t m_pastBytes = 0;
    std::string m_mergeKey; ///< of the last step, empty once nothing may join it
};

} // namespace vantro::app
