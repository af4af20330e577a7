#include "window/MessagesModel.h"

#include "app/flows/JournalFlow.h"
#include "app/flows/ProjectFlow.h"
#include "app/flows/RecordingFlow.h"
#include "app/flows/RecoveryFlow.h"
#include "app/state/AppState.h"
#include "ui/Sentences.h"
#include "window/start/UnsavedRecordingsModel.h"

#include <QLocale>

namespace vantro::window {

MessagesModel::MessagesModel(app::AppState& state, app::flows::Flows flows)
    : m_state(state), m_flows(flows) {
    const auto follow = [this](auto& object, auto signal) {
        connect(&object, signal, this, &MessagesModel::questionChanged);
    };
    connect(&m_state, &app::AppState::errorChanged, this, &MessagesModel::alertChanged);
    follow(m_state, &app::AppState::recordingNameChanged);
    follow(m_flows.recording, &app::flows::RecordingFlow::stopNoticeChanged);
    follow(m_flows.projects, &app::flows::ProjectFlow::questionChanged);
    follow(m_flows.recovery, &app::flows::RecoveryFlow::askedToDeleteChanged);
    follow(m_flows.recovery, &app::flows::RecoveryFlow::detailsChanged);
    follow(m_flows.recovery, &app::flows::RecoveryFlow::offeredChanged);
    follow(m_flows.journals, &app::flows::JournalFlow::offeredChanged);
}

QString MessagesModel::alertText() const {
    const auto& error = m_state.error();
    return error ? ui::sentence(error->description()) : QString();
}

QString MessagesModel::alertSuggestion() const {
    const auto& error = m_state.error();
    return error ? ui::sentence(std::string(error->recoverySuggestion())) : QString();
}

QString MessagesModel::projectName() const {
    return QString::fromStdString(m_state.recordingName());
}

QString MessagesModel::stopNotice() const {
    return m_flows.recording.stopNotice();
}

QString MessagesModel::readOnlyReason() const {
    return ui::sentence(m_flows.projects.readOnlyNotice());
}

QString MessagesModel::pictureReason() const {
    return ui::sentence(m_flows.projects.pictureNotice());
}

QString MessagesModel::deletedName() const {
    const auto* asked = m_flows.recovery.askedToDelete();
    return asked != nullptr ? QString::fromStdString(asked->recording.name) : QString();
}

QString MessagesModel::deletedAbout() const {
    const auto* asked = m_flows.recovery.askedToDelete();
    return asked != nullptr ? start::aboutText(*asked) : QString();
}

QString MessagesModel::restoredName() const {
    return QString::fromStdString(m_flows.journals.offeredName());
}

QString MessagesModel::recoverySize() const {
    return QLocale().formattedDataSize(static_cast<qint64>(m_flows.recovery.offeredBytes()), 1,
                                       QLocale::DataSizeSIFormat);
}

void MessagesModel::dismissAlert() {
    m_state.setShowError(false);
}

void MessagesModel::dismissStopNotice() {
    m_flows.recording.dismissStopNotice();
}

void MessagesModel::saveAndLeave() {
    m_flows.projects.saveAndLeave();
}

void MessagesModel::discardAndLeave() {
    m_flows.projects.discardAndLeave();
}

void MessagesModel::stay() {
    m_flows.projects.stay();
}

void MessagesModel::dismissReadOnlyNotice() {
    m_flows.projects.dismissReadOnlyNotice();
}

void MessagesModel::dismissPictureNotice() {
    m_flows.projects.dismissPictureNotice();
}

void MessagesModel::keepListed() {
    m_flows.recovery.keep();
}

void MessagesModel::deleteListed() {
    m_flows.recovery.deleteAsked();
}

void MessagesModel::restoreEdit() {
    m_flows.journals.restore();
}

void MessagesModel::discardEdit() {
    m_flows.journals.discardOffered();
}

void MessagesModel::dismissEdit() {
    m_flows.journals.dismiss();
}

void MessagesModel::recover() {
    m_flows.recovery.recover();
}

void MessagesModel::dismissRecovery() {
    m_flows.recovery.dismiss();
}

} // namespace vantro::window
