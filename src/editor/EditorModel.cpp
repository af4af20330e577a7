#include "editor/EditorModel.h"

#include "app/flows/ExportFlow.h"
#include "app/flows/ProjectFlow.h"
#include "archive/ArchivePath.h"
#include "editor/ExportRules.h"
#include "ui/Sentences.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QMimeData>
#include <QUrl>
#include <cmath>

namespace vantro::editor {

EditorModel::EditorModel(app::AppState& state, EditorPreview& preview, app::flows::Flows flows,
                         const EditorServices& services)
    : m_state(state)
    , m_preview(preview)
    , m_flows(flows)
    , m_services(services)
    , m_sidebar(state, services.panels, services.tasks)
    , m_frames(state, services.panels, services.tasks, services.openMovie)
    , m_zoomTarget(state, preview) {
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
    connect(&m_state.document(), &app::EditDocument::changed, this, &EditorModel::titleChanged);
    // Several changes at once are one redrawing.
    connect(&m_state.document(), &app::EditDocument::changed, this, [this] { m_refresh.start(); });
    connect(&m_state, &app::AppState::phaseChanged, this, [this] {
        if (m_state.phase().kind != app::AppPhase::Kind::exporting)
            m_refresh.start();
    });
}

void EditorModel::followFlows() {
    connect(&m_flows.exports, &app::flows::ExportFlow::runningChanged, this, [this] {
        m_exportStart = m_services.now();
        Q_EMIT exportChanged();
    });
    connect(&m_flows.exports, &app::flows::ExportFlow::exported, this,
            &EditorModel::setExportedFile);
    connect(&m_frames, &FrameExport::done, this, &EditorModel::setNotice);
    connect(m_sidebar.frame(), &sidebar::FrameGroup::lookChosen, this,
            [this] { setNotice(tr("New recordings will look like this")); });
    connect(&m_flows.projects, &app::flows::ProjectFlow::activityChanged, this,
            &EditorModel::workingChanged);
    connect(&m_flows.projects, &app::flows::ProjectFlow::saved, this, [this](const QString& path) {
        setNotice(tr("Saved %1").arg(QFileInfo(path).fileName()));
    });
    connect(&m_state, &app::AppState::metadataChanged, this, [this] {
        setNotice({});
        setExportedFile({});
    });
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
        labels.append(ui::sentence(std::string(exporting::label(resolution))));
    return labels;
}

QStringList EditorModel::qualities() const {
    return {tr("Fast export"), tr("Balanced"), tr("Small file")};
}

bool EditorModel::exporting() const {
    return m_flows.exports.isRunning();
}

QString EditorModel::progressText() const {
    return tr("%1%").arg(QString::asprintf("%.0f", progress() * 100));
}

QString EditorModel::timeLeft() const {
    constexpr double longSpan = 90; // seconds, from which on minutes are told
    const auto left = secondsLeft(progress(), base::inSeconds(m_services.now() - m_exportStart));
    if (!exporting() || !left)
        return {};
    if (*left > longSpan)
        return tr("About %1 min left").arg(std::lround(*left / 60));
    return tr("About %1 s left").arg(std::lround(std::ceil(*left)));
}

QString EditorModel::sizeEstimate(int format, int resolution, int quality) const {
    const auto& recording = m_state.document().recording();
    if (!recording)
        return {};
    const auto& metadata = recording->metadata();
    const auto file = archive::find(recording->movie());
    const auto bytes = estimatedBytes(
        {.edit = m_state.document().edit(),
         .sourceDuration = metadata.endTime,
         .sourceBytes = file ? file->size : 0,
         .videoSize = {metadata.captureRect.width * metadata.displayScaleFactor,
                       metadata.captureRect.height * metadata.displayScaleFactor},
         .hasSound = metadata.hasSystemAudio || metadata.hasMicrophoneAudio,
         .isGif = app::flows::allExportFormats.at(static_cast<std::size_t>(format)) ==
                  app::flows::ExportFormat::gif,
         .resolution = exporting::allExportResolutions.at(static_cast<std::size_t>(resolution)),
         .quality = media::allVideoQualities.at(static_cast<std::size_t>(quality))});
    if (bytes == 0)
        return {};
    const int decimals = bytes < 10'000'000 ? 1 : 0;
    return tr("About %1")
        .arg(QLocale().formattedDataSize(static_cast<qint64>(bytes), decimals,
                                         QLocale::DataSizeSIFormat));
}

QString EditorModel::exportedName() const {
    return QFileInfo(m_exportedFile).fileName();
}

void EditorModel::showExported() {
    m_services.showInFolder(m_exportedFile);
}

void EditorModel::copyExported() {
    const auto url = QUrl::fromLocalFile(m_exportedFile);
    auto* data = new QMimeData; // owned by the clipboard
    data->setUrls({url});
    // What file managers of GNOME and its kin ask for.
    data->setData(QStringLiteral("x-special/gnome-copied-files"), "copy\n" + url.toEncoded());
    QGuiApplication::clipboard()->setMimeData(data);
}

void EditorModel::copyFrame() {
    setNotice({});
    m_frames.copy(m_preview.transport()->currentTime());
}

void EditorModel::saveFrame() {
    setNotice({});
    m_frames.save(m_preview.transport()->currentTime());
}

QString EditorModel::title() const {
    const auto& document = m_state.document();
    return tr("%1%2 \u2014 Vantro", "name of the recording, mark of unsaved changes")
        .arg(recordingName(), document.isModified() ? QStringLiteral("*") : QString());
}

void EditorModel::setExportedFile(const QString& file) {
    if (m_exportedFile == file)
        return;
    m_exportedFile = file;
    Q_EMIT exportedFileChanged();
}

bool EditorModel::working() const {
    return m_flows.projects.activity() == app::flows::ProjectFlow::Activity::working;
}

bool EditorModel::hasFixedSize(int format) const {
    return format == static_cast<int>(app::flows::ExportFormat::gif);
}

void EditorModel::exportRecording(int format, int resolution, int quality) {
    setNotice({});
    setExportedFile({});
    m_flows.exports.exportRecording(
        app::flows::allExportFormats.at(static_cast<std::size_t>(format)),
        exporting::allExportResolutions.at(static_cast<std::size_t>(resolution)),
        media::allVideoQualities.at(static_cast<std::size_t>(quality)));
}

void EditorModel::cancelExport() {
    m_flows.exports.cancel();
}

void EditorModel::newRecording() {
    m_flows.projects.newRecording();
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
