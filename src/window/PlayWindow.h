#pragma once

#include <QQmlEngine>
#include <memory>

class QQuickWindow;

namespace vantro::editor {
class EditorPreview;
} // namespace vantro::editor

namespace vantro::window {

/// A window with nothing but a film in it; not shown yet. Main thread.
class PlayWindow {
  public:
    /// `preview` outlives it.
    explicit PlayWindow(editor::EditorPreview& preview);
    ~PlayWindow();

    QQuickWindow& window() { return *m_window; }

  private:
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
};

} // namespace vantro::window
