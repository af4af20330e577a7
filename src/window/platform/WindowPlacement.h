#pragma once

#include <QObject>
#include <QPoint>
#include <QTimer>
#include <optional>

class QWindow;

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::ui {
class Preferences;
} // namespace vantro::ui

namespace vantro::window {

/// Where the main window stands: where it last stood, and in a corner of its screen while a
/// recording runs. A remembered place that is off every screen is not used, and a window that grows
/// with its screen is moved so that all of it can be seen. The editor has a size of its own, which
/// it comes back to, maximized or not. Main thread.
class WindowPlacement : public QObject {
  public:
    WindowPlacement(QWindow& window, app::AppState& state, ui::Preferences& preferences);

    /// Puts the window where it stood in the last run.
    void restore();
    void remember();

  private:
    void noteHome();
    void noteEditorSize();
    void restoreEditorSize();
    bool isMaximized() const;
    void phaseChanged();
    void stepAside();
    void goHome();
    void comeToFront();

    QWindow& m_window;
    app::AppState& m_state;
    ui::Preferences& m_preferences;
    bool m_isAside = false;
    bool m_isLarge = false; ///< the editor is shown
    QTimer m_sizeSettles;
    std::optional<QPoint> m_home; ///< where the window stands when it is not aside
};

} // namespace vantro::window
