#include "app/state/EditDocument.h"

#include "base/Fatal.h"

#include <utility>

namespace vantro::app {

std::optional<model::Project> EditDocument::project() const {
    if (!m_content.recording)
        return {};
    return model::Project{
        .name = m_content.name, .recording = *m_content.recording, .edit = m_content.edit};
}

void EditDocument::open(model::Project project) {
    forgetSteps();
    m_savedName = project.name;
    m_savedEdit = project.edit;
    replace({.name = std::move(project.name),
             .recording = std::move(project.recording),
             .edit = std::move(project.edit)});
}

void EditDocument::close(model::Edit choices) {
    forgetSteps();
    replace({.name = m_content.name, .recording = {}, .edit = std::move(choices)});
}

void EditDocument::rename(std::string name) {
    if (m_content.name == name)
        return;
    auto content = m_content;
    content.name = std::move(name);
    replace(std::move(content));
}

void EditDocument::apply(model::Edit edit, std::string_view mergeKey) {
    if (edit == m_content.edit)
        return;
    if (m_content.recording) {
        m_future.clear();
        const bool joins = !mergeKey.empty() && mergeKey == m_mergeKey;
        if (!joins) {
            m_past.push_back(m_content.edit);
            if (m_past.size() > mostSteps)
                m_past.pop_front();
        }
        m_mergeKey = mergeKey;
    }
    auto content = m_content;
    content.edit = std::move(edit);
    replace(std::move(content));
}

void EditDocument::undo() {
    base::require(canUndo(), "there is a step to undo");
    auto content = m_content;
    m_future.push_back(std::exchange(content.edit, std::move(m_past.back())));
    m_past.pop_back();
    m_mergeKey.clear();
    replace(std::move(content));
}

void EditDocument::redo() {
    base::require(canRedo(), "there is a step to redo");
    auto content = m_content;
    m_past.push_back(std::exchange(content.edit, std::move(m_future.back())));
    m_future.pop_back();
    m_mergeKey.clear();
    replace(std::move(content));
}

void EditDocument::saved(const model::Project& written) {
    m_savedName = written.name;
    m_savedEdit = written.edit;
    m_mergeKey.clear();
    auto content = m_content;
    content.recording = written.recording;
    replace(std::move(content));
}

bool EditDocument::isModified() const {
    return m_content.recording && (m_content.name != m_savedName || m_content.edit != m_savedEdit);
}

void EditDocument::replace(Content content) {
    const auto before = std::exchange(m_content, std::move(content));
    Q_EMIT changed(before);
}

void EditDocument::forgetSteps() {
    m_past.clear();
    m_future.clear();
    m_mergeKey.clear();
}

} // namespace vantro::app
