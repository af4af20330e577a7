#pragma once

#include "app/state/FilePanels.h"

namespace vantro {

class AppState;

/// The desktop's own file panels, beside the main window where there is one. Asks before a file is
/// replaced. Main thread.
class NativePanels : public FilePanels {
  public:
    explicit NativePanels(const AppState& state) : m_state(state) {}

    void ask(PanelKind kind, const std::string& proposedName, Answer answer) override;

  private:
    const AppState& m_state;
};

} // namespace vantro
