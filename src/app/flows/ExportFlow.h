#pragma once

#include "app/flows/ExportRunner.h"
#include "app/flows/FilePanels.h"
#include "app/flows/TaskRunner.h"
#include "app/state/AppState.h"

namespace vantro::app::flows {

/// Asks where to, exports there on the worker thread of `tasks` and shows the progress as the
/// phase. Reports of an export that has been left behind by a reset are dropped. Main thread.
class ExportFlow : public QObject {
    Q_OBJECT

  public:
    ExportFlow(AppState& state, FilePanels& panels, TaskRunner& tasks, ExportRunner runner);
    /// Cancels what is running.
    ~ExportFlow() override;

    /// Does nothing while an export runs or its panel is open.
    void exportRecording(ExportFormat format, exporting::ExportResolution resolution,
                         media::VideoQuality quality = media::VideoQuality::fast);
    /// The file is not made; what it would have replaced stays.
    void cancel();

    /// From the answer of the panel to the last word of the exporter.
    bool isRunning() const { return m_running; }

  Q_SIGNALS:
    void runningChanged();
    void exported(const QString& path);
    void exportFailed(const QString& why);

  private:
    void start(ExportJob job);
    void progressed(int request, double fraction);
    void failed(int request, const std::string& failure);
    void finished(int request, const std::filesystem::path& output);
    void setRunning(bool running);

    AppState& m_state;
    FilePanels& m_panels;
    TaskRunner& m_tasks;
    ExportRunner m_runner;
    int m_request = 0;
    bool m_asking = false;
    bool m_running = false;
    std::stop_source m_cancel;
};

} // namespace vantro::app::flows
