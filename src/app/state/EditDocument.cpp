#include "app/state/EditDocument.h"

#include "base/Fatal.h"

#include <utility>

namespace vantro::app {
namespace {

/// What `edit` keeps in memory that `next` does not.
std::size_t ownBytes(const model::Edit& edit, const model::Edit& next) {
    std::size_t bytes = sizeof(edit);
    if (!edit.clickEvents.isSameAs(next.clickEvents))
        bytes += edit.clickEvents.size() * sizeof(model::ClickEvent);
    if (!edit.segments.isSameAs(next.segments))
        bytes += edit.segments.size() * sizeof(model::TimelineSegment);
    return bytes;
}

} // namespace

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

void EditDocument::apply(model::Edit edit, Step step) {
    if (edit == m_content.edit)
        return;
    if (m_content.recording) {
        m_future.clear();
        const bool joins = !step.mergeKey.empty() && step.mergeKey == m_mergeKey;
        if (!joins)
            remember(edit, std::move(step.name));
        m_mergeKey = std::move(step.mergeKey);
        if (joins && edit == m_past.back().edit)
            forgetLastStep();
    }
    auto content = m_content;
    content.edit = std::move(edit);
    replace(std::move(content));
}

/// Keeps the present edit as the one before `next`.
void EditDocument::remember(const model::Edit& next, std::string name) {
    const std::size_t bytes = ownBytes(m_content.edit, next);
    m_past.push_back({m_content.edit, std::move(name), bytes});
    m_pastBytes += bytes;
    while (m_pastBytes > mostBytes && m_past.size() > 1) {
        m_pastBytes -= m_past.front().bytes;
        m_past.pop_front();
    }
}

/// It came back to where it began.
void EditDocument::forgetLastStep() {
    m_pastBytes -= m_past.back().bytes;
    m_past.pop_back();
    m_mergeKey.clear();
}

void EditDocument::undo() {
    base::require(canUndo(), "there is a step to undo");
    Done step = std::move(m_past.back());
    m_past.pop_back();
    m_pastBytes -= step.bytes;
    auto content = m_content;
    std::swap(content.edit, step.edit);
    m_future.push_back(std::move(step));
    m_mergeKey.clear();
    replace(std::move(content));
}

void EditDocument::redo() {
    base::require(canRedo(), "there is a step to redo");
    Done step = std::move(m_future.back());
    m_future.pop_back();
    remember(step.edit, std::move(step.name));
    auto content = m_content;
    content.edit = std::move(step.edit);
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
    m_pastBytes = 0;
    m_future.clear();
    m_mergeKey.clear();
}

} // namespace vantro::app
