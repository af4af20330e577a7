#include "ui/ActionGuard.h"

#include "app/flows/ExportFlow.h"
#include "app/flows/JournalFlow.h"
#include "app/flows/PermissionService.h"
#include "app/flows/ProjectFlow.h"
#include "app/flows/RecordingFlow.h"
#include "app/flows/RecoveryFlow.h"
#include "ui/Sentences.h"

namespace vantro::ui {

using namespace app::flows;

ActionGuard::ActionGuard(app::AppState& state, PermissionService& permission, Flows flows,
                         AskAbilities abilities)
    : m_state(state)
    , m_permission(permission)
    , m_flows(flows)
    , m_askAbilities(std::move(abilities))
    , m_abilities(m_askAbilities()) {
    connect(&permission, &PermissionService::screenRecordingGrantedChanged, this,
            [this] { m_abilities = m_askAbilities(); });
    followEverything();
}

void ActionGuard::askAgain() {
    m_abilities = m_askAbilities();
    Q_EMIT changed();
}

void ActionGuard::followEverything() {
    const auto follow = [this](auto& object, auto signal) {
        connect(&object, signal, this, &ActionGuard::changed);
    };
    for (const auto signal :
         {&app::AppState::phaseChanged, &app::AppState::showErrorChanged,
          &app::AppState::captureModeChanged, &app::AppState::recordingPathChanged,
          &app::AppState::metadataChanged})
        follow(m_state, signal);
    follow(m_permission, &PermissionService::screenRecordingGrantedChanged);
    for (const auto signal : {&RecordingPreparation::windowPickerShownChanged,
                              &RecordingPreparation::desktopAskingChanged,
                              &RecordingPreparation::countdownRemainingChanged})
        follow(m_flows.recording.preparation(), signal);
    follow(m_flows.recording, &RecordingFlow::stoppingChanged);
    follow(m_flows.recording, &RecordingFlow::stopNoticeChanged);
    follow(m_flows.exports, &ExportFlow::runningChanged);
    follow(m_flows.projects, &ProjectFlow::activityChanged);
    follow(m_flows.projects, &ProjectFlow::questionChanged);
    follow(m_flows.recovery, &RecoveryFlow::offeredChanged);
    follow(m_flows.recovery, &RecoveryFlow::askedToDeleteChanged);
    follow(m_flows.recovery, &RecoveryFlow::recordingsChanged);
    follow(m_flows.journals, &JournalFlow::offeredChanged);
}

Screen ActionGuard::screen() const {
    return shownScreen(m_state, m_permission, m_flows.recording);
}

QString ActionGuard::message() const {
    if (m_state.showError())
        return QStringLiteral("alert");
    if (!m_flows.recording.stopNotice().isEmpty() && screen() == Screen::editor)
        return QStringLiteral("stopped");
    if (m_quitAsked)
        return QStringLiteral("quit");
    if (m_flows.projects.isLeaveAsked())
        return QStringLiteral("unsaved");
    if (!m_flows.projects.readOnlyNotice().empty())
        return QStringLiteral("readOnly");
    if (!m_flows.projects.pictureNotice().empty())
        return QStringLiteral("picture");
    return messageOverControls();
}

/// While something is being opened its answer is waited for.
QString ActionGuard::messageOverControls() const {
    if (screen() != Screen::controls || m_flows.projects.isBusy())
        return {};
    if (m_flows.recovery.askedToDelete() != nullptr)
        return QStringLiteral("delete");
    if (m_flows.journals.isOffered())
        return QStringLiteral("restore");
    return m_flows.recovery.isOffered() ? QStringLiteral("recovery") : QString();
}

QString ActionGuard::whyNot(const capture::Ability& ability) {
    return sentence(ability.whyNot);
}

QString ActionGuard::modeMissing() const {
    if (!m_abilities.screens.isAvailable())
        return whyNot(m_abilities.screens); // the root of the others
    switch (m_state.captureMode()) {
    case model::CaptureMode::screen:
        break;
    case model::CaptureMode::window:
        return whyNot(m_abilities.windows);
    case model::CaptureMode::area:
        return whyNot(m_abilities.areas);
    }
    return {};
}

QString ActionGuard::ownWindowsNote() const {
    const bool isOther = m_state.captureMode() == model::CaptureMode::window;
    return isOther || !modeMissing().isEmpty() ? QString() : whyNot(m_abilities.ownWindowsLeftOut);
}

/// Whether this screen is shown, not covered, and no file panel or file operation is under way.
bool ActionGuard::isFree(Screen wanted) const {
    return screen() == wanted && message().isEmpty() && !m_flows.projects.isBusy();
}

bool ActionGuard::mayRecord() const {
    return isFree(Screen::controls) && modeMissing().isEmpty();
}

bool ActionGuard::mayStop() const {
    return screen() == Screen::recording && message().isEmpty() && !m_flows.recording.isStopping();
}

bool ActionGuard::mayOpenProject() const {
    return isFree(Screen::controls) || mayWrite();
}

bool ActionGuard::mayEdit() const {
    return screen() == Screen::editor && message().isEmpty();
}

bool ActionGuard::mayWrite() const {
    return isFree(Screen::editor) && !m_flows.exports.isRunning();
}

void ActionGuard::setQuitAsked(bool asked) {
    if (m_quitAsked == asked)
        return;
    m_quitAsked = asked;
    Q_EMIT changed();
}

} // namespace vantro::ui
