#pragma once

#include "app/flows/Flows.h"
#include "capture/PlatformAbilities.h"
#include "ui/Screen.h"

#include <QObject>
#include <QString>
#include <functional>

#include <QtQml/qqmlregistration.h>

namespace vantro::ui {

/// Says what the user may do now, for every button and every shortcut of the window, and why what
/// the desktop cannot do is not offered.
///
/// While a message lies over the window nothing behind it may be done. Holds no truth but whether
/// the question about quitting is open. Main thread.
class ActionGuard : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    /// The message over the window: alert, quit, unsaved, readOnly, delete, restore, recovery, or
    /// empty for none.
    Q_PROPERTY(QString message READ message NOTIFY changed)
    // One sentence each; empty when the desktop can do it.
    Q_PROPERTY(QString modeMissing READ modeMissing NOTIFY changed)
    Q_PROPERTY(QString systemAudioMissing READ systemAudioMissing NOTIFY changed)
    Q_PROPERTY(QString microphoneMissing READ microphoneMissing NOTIFY changed)
    Q_PROPERTY(QString webcamMissing READ webcamMissing NOTIFY changed)
    /// That our own windows are hidden while the chosen mode records; empty where they are not.
    Q_PROPERTY(QString ownWindowsNote READ ownWindowsNote NOTIFY changed)
    /// The desktop has a dialog of its own to choose what is recorded.
    Q_PROPERTY(bool desktopAsks READ desktopAsks NOTIFY changed)
    Q_PROPERTY(bool record READ mayRecord NOTIFY changed)
    Q_PROPERTY(bool stop READ mayStop NOTIFY changed)
    Q_PROPERTY(bool openProject READ mayOpenProject NOTIFY changed)
    Q_PROPERTY(bool edit READ mayEdit NOTIFY changed)
    /// Saving and exporting.
    Q_PROPERTY(bool write READ mayWrite NOTIFY changed)

  public:
    /// `abilities` are asked for at once, and whenever the permission changes or `askAgain` says
    /// so.
    using AskAbilities = std::function<capture::PlatformAbilities()>;

    ActionGuard(app::AppState& state, app::flows::PermissionService& permission,
                app::flows::Flows flows, AskAbilities abilities);

    /// What the desktop can do may have changed.
    void askAgain();

    /// Changes with `changed`, too.
    Screen screen() const;
    QString message() const;
    /// Of the chosen capture mode.
    QString modeMissing() const;
    QString systemAudioMissing() const { return whyNot(m_abilities.systemSound); }
    QString microphoneMissing() const { return whyNot(m_abilities.microphone); }
    QString webcamMissing() const { return whyNot(m_abilities.camera); }
    QString ownWindowsNote() const;
    bool desktopAsks() const { return !m_abilities.listsContent.isAvailable(); }
    /// Of a desktop that can be recorded but does not tell clicks.
    bool missesClicks() const {
        return m_abilities.screens.isAvailable() && !m_abilities.clicks.isAvailable();
    }
    bool mayRecord() const;
    bool mayStop() const;
    bool mayOpenProject() const;
    bool mayEdit() const;
    bool mayWrite() const;

    bool isQuitAsked() const { return m_quitAsked; }
    void setQuitAsked(bool asked);

  Q_SIGNALS:
    void changed();

  private:
    void followEverything();
    QString messageOverControls() const;
    static QString whyNot(const capture::Ability& ability);
    bool isFree(Screen wanted) const;

    app::AppState& m_state;
    app::flows::PermissionService& m_permission;
    app::flows::Flows m_flows;
    AskAbilities m_askAbilities;
    capture::PlatformAbilities m_abilities;
    bool m_quitAsked = false;
};

} // namespace vantro::ui
