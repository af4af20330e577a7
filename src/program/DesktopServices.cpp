#include "program/DesktopServices.h"

#include "app/Desktop.h"
#include "capture/ScreenRecorder.h"
#include "export/GIFExporter.h"
#include "export/Inspection.h"
#include "export/StillFrame.h"
#include "export/VideoExporter.h"
#include "model/VantroError.h"
#include "render/RendererFactory.h"

#include <algorithm>
#include <atomic>

namespace vantro::program {
namespace {

capture::ScreenRecorder::Configuration
recorderConfiguration(const app::flows::RecorderConfiguration& wanted) {
    return {.outputURL = wanted.outputURL,
            .choice = {.captureMode = wanted.captureMode,
                       .displayID = wanted.displayID,
                       .captureRect = wanted.captureRect,
                       .selectedWindow = wanted.selectedWindow},
            .systemAudioEnabled = wanted.systemAudioEnabled,
            .microphoneAudioEnabled = wanted.microphoneAudioEnabled,
            .webcamEnabled = wanted.webcamEnabled};
}

/// The movie's length is rounded segment by segment: the very end may lie a hair beyond it.
double insideOutput(const model::Recording& recording, const model::Edit& edit, double time) {
    constexpr double oneFrame = 1.0 / 60;
    constexpr double roundingOfSegment = 1.0 / 600;
    const double end = exporting::inspect(recording, edit, 0).outputDuration - oneFrame -
                       roundingOfSegment * static_cast<double>(edit.segments.size());
    return std::clamp(time, 0.0, std::max(end, 0.0));
}

/// A ScreenRecorder with the connection that it records over.
class DesktopRecorder : public app::flows::Recorder {
  public:
    explicit DesktopRecorder(app::flows::RecorderConfiguration configuration)
        : m_configuration(std::move(configuration)) {}

    void start() override {
        m_platform = app::connectDesktop();
        m_recorder = std::make_unique<capture::ScreenRecorder>(
            recorderConfiguration(m_configuration), *m_platform);
        m_recorder->start();
        m_running = m_recorder.get();
    }

    model::RecordingMetadata stop() override {
        if (m_recorder == nullptr)
            throw model::VantroError(model::VantroError::Kind::noRecordingData);
        auto metadata = m_recorder->stop();
        if (!std::filesystem::exists(m_configuration.outputURL))
            throw model::VantroError(model::VantroError::Kind::noRecordingData);
        return metadata;
    }

    app::flows::RecorderStatus status() override {
        auto* running = m_running.load();
        if (running == nullptr)
            return {};
        const auto statistics = running->statistics();
        return {.framesDropped = statistics.framesDropped,
                .isCapturing = statistics.condition == capture::RecordingCondition::recording};
    }

  private:
    const app::flows::RecorderConfiguration m_configuration;
    std::unique_ptr<capture::CapturePlatform> m_platform;
    std::unique_ptr<capture::ScreenRecorder> m_recorder;
    std::atomic<capture::ScreenRecorder*> m_running = nullptr; ///< once it has started
};

} // namespace

DesktopRecording::DesktopRecording() = default;
DesktopRecording::~DesktopRecording() = default;

std::vector<capture::ShareableDisplay> DesktopRecording::displays() {
    if (!preflight())
        return {};
    auto content = m_platform->shareableContent();
    return content ? std::move(content->displays) : std::vector<capture::ShareableDisplay>();
}

std::shared_ptr<app::flows::Recorder>
DesktopRecording::makeRecorder(app::flows::RecorderConfiguration configuration) {
    return std::make_shared<DesktopRecorder>(std::move(configuration));
}

bool DesktopRecording::preflight() {
    if (m_platform != nullptr && m_platform->shareableContent())
        return true;
    try {
        m_platform = app::connectDesktop();
        return true;
    } catch (const model::VantroError&) {
        m_platform.reset();
        return false;
    }
}

std::expected<capture::ShareableContent, std::string> listShareableContent() {
    try {
        return app::shareableContent(*app::connectDesktop());
    } catch (const model::VantroError& error) {
        return std::unexpected(error.message());
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
