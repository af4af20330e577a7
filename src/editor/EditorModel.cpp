#include "editor/EditorModel.h"

#include "app/flows/ExportFlow.h"
#include "app/flows/ProjectFlow.h"

#include <QFileInfo>

namespace vantro::editor {

EditorModel::EditorModel(app::AppState& state, EditorPreview& preview, app::flows::Flows flows,
                         const EditorServices& services)
    : m_state(state)
    , m_preview(preview)
    , m_flows(flows)
    , m_sidebar(state, services.panels, services.tasks) {
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(0);
    connect(&m_refresh, &QTimer::timeout, this, &EditorModel::refreshPreview);
    followState();
    followFlows();
}

void EditorModel::followState() {
    connect(&m_state, &app::AppState::recordingNameChanged, this,
            &EditorModel::recordingNameChanged);
    connect(&m_state, &app::AppState::phaseChanged, this, &EditorModel::exportChanged);
    // Several changes at once are one redrawing.
    connect(&m_state.document(), &app::EditDocument::changed, this, [this] { m_refresh.start(); });
    connect(&m_state, &app::AppState::phaseChanged, this, [this] {
        if (m_state.phase().kind != app::AppPhase::Kind::exporting)
            m_refresh.start();
    });
}

void EditorModel::followFlows() {
    connect(&m_flows.exports, &app::flows::ExportFlow::runningChanged, this,
            &EditorModel::exportChanged);
    connect(&m_flows.exports, &app::flows::ExportFlow::exported, this, [this](const QString& path) {
        setNotice(tr("Exported %1").arg(QFileInfo(path).fileName()));
    });
    connect(&m_flows.projects, &app::flows::ProjectFlow::activityChanged, this,
            &EditorModel::workingChanged);
    connect(&m_flows.projects, &app::flows::ProjectFlow::saved, this, [this](const QString& path) {
        setNotice(tr("Saved %1").arg(QFileInfo(path).fileName()));
    });
    connect(&m_state, &app::AppState::metadataChanged, this, [this] { setNotice({}); });
}

void EditorModel::refreshPreview() {
    const auto& document = m_state.document();
    const bool shown = m_state.phase().kind == app::AppPhase::Kind::previewing ||
                       m_state.phase().kind == app::AppPhase::Kind::exporting;
    if (shown)
        m_preview.show(document.recording(), document.edit());
    else
        m_preview.show({});
}

void EditorModel::setRecordingName(const QString& name) {
    m_state.setRecordingName(name.toStdString());
}

QStringList EditorModel::formats() const {
    return {tr("MP4 video"), tr("Animated GIF")};
}

QStringList EditorModel::resolutions() const {
    QStringList labels;
    for (const auto resolution : exporting::allExportResolutions)
        labels.append(tr(std::string(exporting::label(resolution)).c_str()));
    return labels;
}

QStringList EditorModel::qualities() const {
    return {tr("Fast export"), tr("Balanced"), tr("Small file")};
}

bool EditorModel::exporting() const {
    return m_flows.exports.isRunning();
}

QString EditorModel::progressText() const {
    return QString::asprintf("%.0f%%", progress() * 100);
}

bool EditorModel::working() const {
    return m_flows.projects.activity() == app::flows::ProjectFlow::Activity::working;
}

bool EditorModel::hasFixedSize(int format) const {
    return format == static_cast<int>(app::flows::ExportFormat::gif);
}

void EditorModel::exportRecording(int format, int resolution, int quality) {
    setNotice({});
    m_flows.exports.exportRecording(
        app::flows::allExportFormats.at(static_cast<std::size_t>(format)),
        exporting::allExportResolutions.at(static_cast<std::size_t>(resolution)),
        media::allVideoQualities.at(static_cast<std::size_t>(quality)));
}

void EditorModel::cancelExport() {
    m_flows.exports.cancel();
}

void EditorModel::newRecording() {
    m_state.reset();
}

void EditorModel::openProject() {
    m_flows.projects.openProject();
}

void EditorModel::saveProject() {
    setNotice({});
    m_flows.projects.saveProject();
}

void EditorModel::saveProjectAs() {
    setNotice({});
    m_flows.projects.saveProjectAs();
}

void EditorModel::setNotice(const QString& notice) {
    if (m_notice == notice)
        return;
    m_notice = notice;
    Q_EMIT noticeChanged();
}

} // namespace vantro::editor
