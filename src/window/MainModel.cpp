#include "window/MainModel.h"

#include "app/files/ImportMovie.h"
#include "app/files/ProjectPackage.h"
#include "app/flows/ExportFlow.h"
#include "app/flows/JournalFlow.h"
#include "app/flows/PermissionService.h"
#include "app/flows/ProjectFlow.h"
#include "ui/ActionGuard.h"
#include "ui/Sentences.h"
#include "ui/TimeText.h"
#include "window/picker/WindowPickerModel.h"

#include <QFile>
#include <algorithm>

namespace vantro::window {
namespace {

/// Without the slash that ends a folder's name in some file managers.
std::filesystem::path pathOf(const QUrl& file) {
    std::filesystem::path path = QFile::encodeName(file.toLocalFile()).toStdString();
    return path.has_filename() ? path : path.parent_path();
}

bool isOpenable(const QUrl& file) {
    const auto path = pathOf(file);
    return file.isLocalFile() &&
           (path.extension() == app::files::package::extension || app::files::hasMovieName(path));
}

} // namespace

MainModel::MainModel(app::AppState& state, app::flows::PermissionService& permission,
                     picker::WindowPickerModel& windows, app::flows::Flows flows,
                     ui::ActionGuard& guard)
    : m_state(state)
    , m_permission(permission)
    , m_windows(windows)
    , m_flows(flows)
    , m_guard(guard)
    , m_messages(state, flows) {
    connect(&guard, &ui::ActionGuard::changed, this, &MainModel::clicksNoteChanged);
    connectState();
    connectFlows();
}

void MainModel::connectState() {
    connect(&m_state, &app::AppState::phaseChanged, this, &MainModel::phaseChanged);
    connect(&m_state, &app::AppState::recordingPathChanged, this, &MainModel::screenChanged);
    connect(&m_state, &app::AppState::metadataChanged, this, &MainModel::screenChanged);
    connect(&m_state, &app::AppState::captureModeChanged, this, &MainModel::captureModeChanged);
    for (const auto changed :
         {&app::AppState::systemAudioEnabledChanged, &app::AppState::microphoneAudioEnabledChanged,
          &app::AppState::webcamEnabledChanged})
        connect(&m_state, changed, this, &MainModel::sourcesChanged);
    connect(&m_permission, &app::flows::PermissionService::screenRecordingGrantedChanged, this,
            &MainModel::screenChanged);
}

void MainModel::connectFlows() {
    auto& preparation = m_flows.recording.preparation();
    connect(&preparation, &app::flows::RecordingPreparation::windowPickerShownChanged, this,
            [this] {
                m_windows.setShown(m_flows.recording.preparation().isWindowPickerShown());
                Q_EMIT screenChanged();
            });
    connect(&preparation, &app::flows::RecordingPreparation::desktopAskingChanged, this,
            &MainModel::screenChanged);
    connect(&preparation, &app::flows::RecordingPreparation::chosenContentChanged, this, [this] {
        ++m_chosenNumber;
        Q_EMIT chosenChanged();
    });
    connect(&preparation, &app::flows::RecordingPreparation::countdownRemainingChanged, this,
            [this] {
                Q_EMIT screenChanged();
                Q_EMIT countdownChanged();
            });
    for (const auto changed :
         {&app::flows::RecordingFlow::elapsedSecondsChanged,
          &app::flows::RecordingFlow::stoppingChanged, &app::flows::RecordingFlow::pausedChanged,
          &app::flows::RecordingFlow::recorderStatusChanged})
        connect(&m_flows.recording, changed, this, &MainModel::recordingChanged);
}

void MainModel::phaseChanged() {
    Q_EMIT screenChanged();
    if (m_state.phase() == app::AppPhase::recording())
        return;
    m_guard.setQuitAsked(false);
    // A recording that could not be finished is an error that the user must see.
    if (std::exchange(m_quitAfterStop, false) && m_state.phase() == app::AppPhase::previewing())
        Q_EMIT quitReady();
}

QString MainModel::screen() const {
    switch (ui::shownScreen(m_state, m_permission, m_flows.recording)) {
    case ui::Screen::waiting:
        return QStringLiteral("waiting");
    case ui::Screen::controls:
        return QStringLiteral("controls");
    case ui::Screen::picker:
        return QStringLiteral("picker");
    case ui::Screen::asking:
        return QStringLiteral("asking");
    case ui::Screen::confirming:
        return QStringLiteral("confirming");
    case ui::Screen::countdown:
        return QStringLiteral("countdown");
    case ui::Screen::selecting:
        return QStringLiteral("selecting");
    case ui::Screen::recording:
        return QStringLiteral("recording");
    case ui::Screen::editor:
        return QStringLiteral("editor");
    case ui::Screen::empty:
        break;
    }
    return QStringLiteral("empty");
}

int MainModel::captureMode() const {
    return static_cast<int>(m_state.captureMode());
}

void MainModel::setCaptureMode(int mode) {
    if (mode >= 0 && mode < static_cast<int>(model::allCaptureModes.size()))
        m_state.setCaptureMode(model::allCaptureModes[static_cast<std::size_t>(mode)]);
}

QString MainModel::elapsed() const {
    return ui::elapsedText(m_flows.recording.elapsedSeconds());
}

QString MainModel::chosenPicture() const {
    const auto& content = m_flows.recording.preparation().chosenContent();
    return content && content->picture != nullptr
               ? QStringLiteral("image://chosen/%1").arg(m_chosenNumber)
               : QString();
}

QString MainModel::recordingNote() const {
    const auto& status = m_flows.recording.recorderStatus();
    if (!status.isCapturing())
        return tr("Capture has ended. Stop to keep what was recorded.");
    const auto left = m_flows.recording.diskSecondsLeft();
    if (left && *left < app::files::DiskForecast::verySoon)
        return tr("The disk is full in %1. Vantro stops before.").arg(ui::elapsedText(*left));
    if (!status.lostSources.empty()) {
        QStringList lost;
        for (const auto& source : status.lostSources)
            lost.append(ui::sentence(source));
        return tr("Not recorded: %1").arg(lost.join(QStringLiteral("; ")));
    }
    if (std::ranges::any_of(status.sounds, [](const capture::SoundStatus& sound) {
            return sound.kind == capture::SoundKind::microphone && sound.isSilent;
        }))
        return tr("The microphone is silent.");
    if (status.framesDropped > 0)
        return tr("Frames dropped: %1").arg(status.framesDropped);
    QStringList notes;
    if (left && *left < app::files::DiskForecast::soon)
        notes.append(tr("There is room for %1.").arg(ui::elapsedText(*left)));
    for (const auto& note : status.notes)
        notes.append(ui::sentence(note));
    return notes.join(QLatin1Char(' '));
}

void MainModel::openProject() {
    m_flows.projects.openProject();
}

void MainModel::pickWindow(int row) {
    if (const auto window = m_windows.window(row))
        m_flows.recording.preparation().windowSelected(*window);
}

bool MainModel::canOpen(const QList<QUrl>& files) const {
    return std::ranges::any_of(files, isOpenable);
}

void MainModel::openFiles(const QList<QUrl>& files) {
    const auto first = std::ranges::find_if(files, isOpenable);
    if (first != files.end())
        m_flows.projects.open(pathOf(*first));
}

/// Nothing is left to be asked.
void MainModel::quit() {
    m_flows.recording.preparation().areaCancelled();
    m_flows.exports.cancel();
    Q_EMIT quitReady();
}

bool MainModel::mayClose() {
    if (m_state.phase() != app::AppPhase::recording()) {
        if (m_state.document().isModified()) {
            m_flows.projects.leave([this] { m_flows.journals.discard([this] { quit(); }); });
            return false;
        }
        quit();
        return true;
    }
    if (stopping())
        m_quitAfterStop = true;
    else
        m_guard.setQuitAsked(true);
    return false;
}

void MainModel::keepRecording() {
    m_guard.setQuitAsked(false);
}

QString MainModel::clicksNote() const {
    if (!m_guard.missesClicks())
        return {};
    return m_markKey.isEmpty()
               ? tr("This desktop does not tell clicks. The options set up a key for zooms.")
               : tr("This desktop does not tell clicks. Press %1 where a zoom should be.")
                     .arg(m_markKey);
}

void MainModel::setMarkKey(const QString& keys) {
    if (std::exchange(m_markKey, keys) != keys)
        Q_EMIT clicksNoteChanged();
}

void MainModel::stopAndQuit() {
    m_guard.setQuitAsked(false);
    m_quitAfterStop = true;
    m_flows.recording.stopRecording();
}

} // namespace vantro::window
