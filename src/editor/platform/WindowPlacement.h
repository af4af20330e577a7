#pragma once

#include <QObject>
#include <QPoint>

class QWindow;

namespace vantro {

class AppState;
class Preferences;

/// Where the main window stands: where it last stood, and in a corner of its screen while a
/// recording runs. A remembered place that is off every screen is not used. Main thread.
class WindowPlacement : public QObject {
  public:
    WindowPlacement(QWindow& window, AppState& state, Preferences& preferences);

    /// Puts the window where it stood in the last run.
    void restore();
    void remember();

  private:
    void phaseChanged();
    void stepAside();

    QWindow& m_window;
    AppState& m_state;
    Preferences& m_preferences;
    bool m_isAside = false;
    QPoint m_home;
};

} // namespace vantro
