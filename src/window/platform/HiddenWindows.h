#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QWindow>

namespace vantro::app::flows {
class RecordingFlow;
} // namespace vantro::app::flows

namespace vantro::window {

/// Takes our own windows off the screens for as long as the recording flow wants that, and brings
/// back those that were shown. Main thread.
class HiddenWindows : public QObject {
  public:
    /// `flow` outlives this.
    explicit HiddenWindows(app::flows::RecordingFlow& flow);

  private:
    void update();

    app::flows::RecordingFlow& m_flow;
    QList<QPointer<QWindow>> m_hidden;
};

} // namespace vantro::window
