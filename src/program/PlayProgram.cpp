#include "program/PlayProgram.h"

#include "app/cli/CommonOptions.h"
#include "app/flows/QtMainLoop.h"
#include "editor/EditorPreview.h"
#include "program/DesktopServices.h"
#include "program/PlayStatistics.h"
#include "program/WindowedApplication.h"
#include "window/PlayWindow.h"

#include <QApplication>
#include <QQuickWindow>
#include <QTimer>
#include <stdexcept>

namespace vantro::program {
namespace {

base::HostDuration periodOf(const model::Project& project) {
    return base::HostDuration(std::chrono::seconds(1)) / project.recording.metadata().frameRate;
}

class PlayProgram {
  public:
    explicit PlayProgram(const app::cli::PlayRequest& request);
    app::cli::PlayReport run();

  private:
    void begin();
    void followPlayhead();

    const app::cli::PlayRequest& m_request;
    HeardSound m_heard;
    PlayStatistics m_statistics;
    app::flows::QtTaskRunner m_tasks{"com.vantro.preview"};
    editor::EditorPreview m_preview;
    window::PlayWindow m_window{m_preview};
    bool m_hasBegun = false;
    double m_playhead = 0; ///< seconds
};

PlayProgram::PlayProgram(const app::cli::PlayRequest& request)
    : m_request(request)
    , m_statistics(periodOf(request.project), m_heard)
    , m_preview(
          m_tasks,
          [&request](const auto& recording, const auto& edit) {
              return openMovie(recording, edit, app::cli::makeRequestedRenderer(request.renderer));
          },
          [this](const auto& composition) { return m_heard.listenTo(makeSound(composition)); },
          {media::proxy::usualProxyFolder()}) {
    m_preview.pictures()->setWatcher(m_statistics);
    m_preview.setMuted(request.muted);
    QObject::connect(&m_preview, &editor::EditorPreview::statusChanged, [this] {
        if (!m_preview.problem().isEmpty())
            QCoreApplication::quit();
        else if (m_preview.isReady() && !std::exchange(m_hasBegun, true))
            begin();
    });
}

void PlayProgram::begin() {
    auto* transport = m_preview.transport();
    transport->goToStart();
    transport->togglePlayPause();
    m_statistics.begin();
    QObject::connect(transport, &editor::PlayerTimeObserver::currentTimeChanged,
                     [this] { followPlayhead(); });
    if (m_request.seconds)
        QTimer::singleShot(std::chrono::duration_cast<std::chrono::milliseconds>(
                               std::chrono::duration<double>(*m_request.seconds)),
                           Qt::PreciseTimer, qApp, &QCoreApplication::quit);
}

/// The transport plays the film over and over; here once is enough.
void PlayProgram::followPlayhead() {
    const auto* transport = m_preview.transport();
    const double before = std::exchange(m_playhead, transport->currentTime());
    if (m_playhead < before && transport->isPlaying())
        QCoreApplication::quit();
}

app::cli::PlayReport PlayProgram::run() {
    const std::stop_callback interrupted(m_request.interrupted, [] {
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    m_preview.show(m_request.project.recording, m_request.project.edit);
    m_window.window().show();
    QCoreApplication::exec();
    if (!m_preview.problem().isEmpty())
        throw std::runtime_error(m_preview.problem().toStdString());
    return m_statistics.report(m_preview.player() ? m_preview.player()->counts().dropped : 0);
}

} // namespace

app::cli::PlayReport playInWindow(int& argc, char** argv, const app::cli::PlayRequest& request) {
    const auto application = makeWindowedApplication(argc, argv);
    return PlayProgram(request).run();
}

} // namespace vantro::program
