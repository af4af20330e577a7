#pragma once

#include "model/Project.h"

#include <QObject>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
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

    /// Earlier steps are forgotten. Each holds 150 kB at most where it changed 2,000 clicks.
    static constexpr std::size_t mostSteps = 100;

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

    /// A step of editing. Consecutive steps of one key that is not empty count as one: give each
    /// drag a key of its own. An equal edit is no step.
    void apply(model::Edit edit, std::string_view mergeKey = {});
    bool canUndo() const { return !m_past.empty(); }
    bool canRedo() const { return !m_future.empty(); }
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
    void replace(Content content);
    void forgetSteps();

    Content m_content;
    std::string m_savedName;
    model::Edit m_savedEdit;
    std::deque<model::Edit> m_past;    ///< the last step's at the back
    std::vector<model::Edit> m_future; ///< the next one's at the back
    std::string m_mergeKey;            ///< of the last step, empty once nothing may join it
};

} // namespace vantro::app
