#pragma once

#include "app/flows/FilePanels.h"

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::ui {

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
