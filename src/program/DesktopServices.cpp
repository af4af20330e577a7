#include "program/DesktopServices.h"

#include "app/Desktop.h"
#include "capture/session/RecordingSession.h"
#include "export/GifExporter.h"
#include "export/VideoExporter.h"
#include "media/pulse/PulseSound.h"
#include "model/VantroError.h"
#include "render/RendererFactory.h"

#include <utility>

namespace vantro::program {

DesktopRecording::DesktopRecording() = default;
DesktopRecording::~DesktopRecording() = default;

capture::CapturePlatform* DesktopRecording::connected() {
    if (m_platform != nullptr && m_platform->isConnected())
        return m_platform.get();
    try {
        m_platform = app::connectDesktop();
    } catch (const std::exception& error) {
        m_platform.reset();
        m_whyNot = error.what();
    }
    return m_platform.get();
}

std::vector<capture::ShareableDisplay> DesktopRecording::displays() {
    auto* platform = connected();
    if (platform == nullptr)
        return {};
    return platform->displays().value_or(std::vector<capture::ShareableDisplay>());
}

capture::PlatformAbilities DesktopRecording::abilities() {
    auto* platform = connected();
    if (platform == nullptr)
        return capture::noAbilities(m_whyNot);
    auto able = platform->abilities();
    able.systemSound = m_sound.system;
    able.microphone = m_sound.microphone;
    able.camera = m_camera;
    return able;
}

std::shared_ptr<capture::Recorder>
DesktopRecording::makeRecorder(capture::RecordingRequest request) {
    auto recorder = std::make_shared<capture::RecordingSession>(
        std::move(request), app::connectDesktop, app::desktopSound(), app::desktopCameras());
    m_recorder = recorder;
    return recorder;
}

bool DesktopRecording::preflight() {
    const auto recorder = m_recorder.lock();
    if (recorder && recorder->statistics().isRunning)
        return true;
    auto* platform = connected();
    return platform != nullptr && platform->abilities().screens.isAvailable();
}

std::expected<capture::ShareableContent, std::string> listShareableContent() {
    try {
        return app::shareableContent(*app::connectDesktop(),
                                     capture::CapturePlatform::WindowIcons::included);
    } catch (const std::exception& error) {
        return std::unexpected(error.what());
    }
}

void runExport(const app::flows::ExportJob& job,
               const std::function<void(double fraction)>& progress,
               const std::stop_token& cancelled) {
    render::MovieSession session(job.recording, job.edit,
                                 render::makeRenderer(render::RendererChoice::automatic));
    if (job.format == app::flows::ExportFormat::gif) {
        exporting::GifExporter().run(session, job.output, progress, cancelled);
        return;
    }
    exporting::VideoExporter exporter;
    exporter.setQuality(job.quality);
    exporter.run(session, job.resolution, job.output, progress, cancelled);
}

std::unique_ptr<render::MovieSession> openMovie(const model::Recording& recording,
                                                const model::Edit& edit,
                                                std::unique_ptr<render::Renderer> renderer) {
    return std::make_unique<render::MovieSession>(recording, edit, std::move(renderer),
                                                  render::TimeLine::source);
}

std::unique_ptr<render::MovieSession> openMovieForEditor(const model::Recording& recording,
                                                         const model::Edit& edit) {
    return openMovie(recording, edit, render::makeRenderer(render::RendererChoice::automatic));
}

std::unique_ptr<media::player::PlayerSound> makeSound(const media::Composition& composition) {
    return media::pulse::makePulseSound(composition);
}

} // namespace vantro::program
