#pragma once

#include "app/flows/FilePanels.h"

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
    explicit NativePanels(const app::AppState& state) : m_state(state) {}

    void ask(app::flows::PanelKind kind, const std::string& proposedName, Answer answer) override;

  private:
    const app::AppState& m_state;
};

} // namespace vantro::ui
