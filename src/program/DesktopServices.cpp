#include "program/DesktopServices.h"

#include "app/Desktop.h"
#include "capture/RecordingSession.h"
#include "export/GIFExporter.h"
#include "export/Inspection.h"
#include "export/StillFrame.h"
#include "export/VideoExporter.h"
#include "model/VantroError.h"
#include "render/RendererFactory.h"

#include <algorithm>

namespace vantro::program {
namespace {

/// The movie's length is rounded segment by segment: the very end may lie a hair beyond it.
double insideOutput(const model::Recording& recording, const model::Edit& edit, double time) {
    constexpr double oneFrame = 1.0 / 60;
    constexpr double roundingOfSegment = 1.0 / 600;
    const double end = exporting::inspect(recording, edit, 0).outputDuration - oneFrame -
                       roundingOfSegment * static_cast<double>(edit.segments.size());
    return std::clamp(time, 0.0, std::max(end, 0.0));
}

} // namespace

DesktopRecording::DesktopRecording() = default;
DesktopRecording::~DesktopRecording() = default;

capture::CapturePlatform* DesktopRecording::connected() {
    if (m_platform != nullptr && m_platform->displays())
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
    return platform != nullptr ? platform->abilities() : capture::noAbilities(m_whyNot);
}

std::shared_ptr<capture::Recorder>
DesktopRecording::makeRecorder(capture::RecordingRequest request) {
    auto recorder =
        std::make_shared<capture::RecordingSession>(std::move(request), app::connectDesktop);
    m_recorder = recorder;
    return recorder;
}

bool DesktopRecording::preflight() {
    const auto recorder = m_recorder.lock();
    return (recorder && recorder->statistics().isRunning) || connected() != nullptr;
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
    auto renderer = render::makeRenderer(render::RendererChoice::automatic);
    if (job.format == app::flows::ExportFormat::gif)
        exporting::GIFExporter(std::move(renderer))
            .run(job.recording, job.edit, job.output, progress, cancelled);
    else
        exporting::VideoExporter(std::move(renderer))
            .run(job.recording, job.edit, job.resolution, job.output, progress, cancelled);
}

editor::PreviewSource exportPreview() {
    return {.duration =
                [](const model::Recording& recording, const model::Edit& edit) {
                    return exporting::inspect(recording, edit, 0).outputDuration;
                },
            .picture =
                [](const model::Recording& recording, const model::Edit& edit, double time) {
                    return exporting::composeStillFrame(
                        recording, edit, exporting::ExportResolution::original,
                        insideOutput(recording, edit, time),
                        render::makeRenderer(render::RendererChoice::automatic));
                }};
}

} // namespace vantro::program
