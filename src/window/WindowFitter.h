#pragma once

#include <QPointer>
#include <QQuickWindow>
#include <QSizeF>

#include <QtQml/qqmlregistration.h>

namespace vantro::window {

/// Keeps a window at the size that its content wants.
///
/// The window manager is told the limits first and then the size, in one step: width after height
/// would let it answer with a size of its own in between. Main thread.
class WindowFitter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickWindow* window READ window WRITE setWindow NOTIFY changed)
    /// Rounded up to whole units.
    Q_PROPERTY(QSizeF wanted READ wanted WRITE setWanted NOTIFY changed)
    /// The user may make the window any size down to `smallest`; `wanted` is where it starts.
    Q_PROPERTY(bool resizable READ isResizable WRITE setResizable NOTIFY changed)
    Q_PROPERTY(QSizeF smallest READ smallest WRITE setSmallest NOTIFY changed)

  public:
    QQuickWindow* window() const { return m_window; }
    void setWindow(QQuickWindow* window);
    QSizeF wanted() const { return m_wanted; }
    void setWanted(QSizeF wanted);
    bool isResizable() const { return m_resizable; }
    void setResizable(bool resizable);
    QSizeF smallest() const { return m_smallest; }
    void setSmallest(QSizeF smallest);

  Q_SIGNALS:
    void changed();

  private:
    void fit();

    QPointer<QQuickWindow> m_window;
    QSizeF m_wanted;
    QSizeF m_smallest;
    bool m_resizable = false;
};

} // namespace vantro::window
