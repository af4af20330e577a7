#include "app/flows/ExportFlow.h"

#include "app/files/FileNames.h"
#include "app/flows/ErrorText.h"

#include <QPointer>
#include <algorithm>

namespace vantro::app::flows {

ExportFlow::ExportFlow(AppState& state, FilePanels& panels, TaskRunner& tasks, ExportRunner runner)
    : m_state(state), m_panels(panels), m_tasks(tasks), m_runner(std::move(runner)) {
    connect(&m_state, &AppState::phaseChanged, this, [this] {
        const auto phase = m_state.phase().kind;
        if (m_running && phase != AppPhase::Kind::previewing && phase != AppPhase::Kind::exporting)
            cancel();
    });
}

ExportFlow::~ExportFlow() {
    m_cancel.request_stop();
}

void ExportFlow::exportRecording(ExportFormat format, exporting::ExportResolution resolution,
                                 media::VideoQuality quality) {
    if (m_asking || m_running)
        return;
    const auto& recording = m_state.document().recording();
    if (!recording)
        return m_state.setError({}, model::VantroError::Kind::noRecordingData);
    ExportJob job{.recording = *recording,
                  .edit = m_state.document().edit(),
                  .format = format,
                  .resolution = resolution,
                  .quality = quality,
                  .output = {}};
    const bool movie = format == ExportFormat::mp4;
    m_asking = true;
    m_panels.ask(movie ? PanelKind::saveMovie : PanelKind::saveGif,
                 files::safeFileName(m_state.recordingName()) + (movie ? ".mp4" : ".gif"),
                 [this, job = std::move(job)](const auto& output) mutable {
                     m_asking = false;
                     if (!output || m_state.phase() != AppPhase::previewing())
                         return;
                     job.output = output->path;
                     start(std::move(job));
                 });
}

void ExportFlow::start(ExportJob job) {
    const int request = ++m_request;
    m_cancel = std::stop_source();
    setRunning(true);
    // At quit the worker goes on for a while after this has gone.
    m_tasks.run([self = QPointer(this), &tasks = m_tasks, request, job = std::move(job),
                 runner = m_runner,
                 cancelled = m_cancel.get_token()]() -> TaskRunner::Continuation {
        const auto report = [&](auto function, const auto& value) {
            return [self, function, request, value] {
                if (self)
                    (self->*function)(request, value);
            };
        };
        try {
            runner(
                job,
                [&](double fraction) { tasks.onMain(report(&ExportFlow::progressed, fraction)); },
                cancelled);
            return report(&ExportFlow::finished, job.output);
        } catch (const std::exception& error) {
            return report(&ExportFlow::failed,
                          failureText(error, model::VantroError::Kind::exportFailed));
        }
    });
}

void ExportFlow::progressed(int request, double fraction) {
    if (request == m_request)
        m_state.setPhase(AppPhase::exporting(std::clamp(fraction, 0.0, 1.0)));
}

void ExportFlow::failed(int request, const std::string& failure) {
    if (request != m_request)
        return; // what was cancelled may fail as it likes
    setRunning(false);
    m_state.setError(failure, model::VantroError::Kind::exportFailed);
    m_state.setPhase(AppPhase::previewing());
    Q_EMIT exportFailed(QString::fromStdString(failure));
}

void ExportFlow::finished(int request, const std::filesystem::path& output) {
    if (request != m_request)
        return;
    setRunning(false);
    m_state.setPhase(AppPhase::previewing());
    Q_EMIT exported(QString::fromStdString(output.string()));
}

void ExportFlow::cancel() {
    if (!m_running)
        return;
    m_cancel.request_stop();
    ++m_request;
    setRunning(false);
    if (m_state.phase().kind == AppPhase::Kind::exporting)
        m_state.setPhase(AppPhase::previewing());
}

void ExportFlow::setRunning(bool running) {
    if (m_running == running)
        return;
    m_running = running;
    Q_EMIT runningChanged();
}

} // namespace vantro::app::flows
