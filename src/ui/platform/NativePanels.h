#pragma once

#include "app/flows/FilePanels.h"
#include "ui/Preferences.h"

#include <QString>

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::ui {

/// Where to save what was chosen in a panel: with `suffix`, and into the project whose folder was
/// gone into, as panels do with a project that is to be replaced.
QString savePath(const QString& chosen, const QString& suffix);

/// The desktop's own file panels, beside the main window where there is one. Asks before a file is
/// replaced. Main thread.
class NativePanels : public app::flows::FilePanels {
  public:
    /// `preferences` remember which folder was chosen last, for each use of one.
    NativePanels(const app::AppState& state, Preferences& preferences)
        : m_state(state), m_preferences(preferences) {}

    void ask(app::flows::PanelKind kind, const std::string& proposedName, Answer answer) override;

  private:
    QString startFolder(app::flows::PanelKind kind) const;

    const app::AppState& m_state;
    Preferences& m_preferences;
};

} // namespace vantro::ui
