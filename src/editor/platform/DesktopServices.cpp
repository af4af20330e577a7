#include "editor/platform/DesktopServices.h"

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

namespace vantro {
namespace {

ScreenRecorder::Configuration recorderConfiguration(const RecorderConfiguration& wanted) {
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
double insideOutput(const EditedRecording& recording, double time) {
    constexpr double oneFrame = 1.0 / 60;
    constexpr double roundingOfSegment = 1.0 / 600;
    const double end = inspect(recording, 0).outputDuration - oneFrame -
                       roundingOfSegment * static_cast<double>(recording.segments.size());
    return std::clamp(time, 0.0, std::max(end, 0.0));
}

/// A ScreenRecorder with the connection that it records over.
class DesktopRecorder : public Recorder {
  public:
    explicit DesktopRecorder(RecorderConfiguration configuration)
        : m_configuration(std::move(configuration)) {}

    void start() override {
        m_platform = connectDesktop();
        m_recorder =
            std::make_unique<ScreenRecorder>(recorderConfiguration(m_configuration), *m_platform);
        m_recorder->start();
        m_running = m_recorder.get();
    }

    RecordingMetadata stop() override {
        if (m_recorder == nullptr)
            throw VantroError(VantroError::Kind::noRecordingData);
        auto metadata = m_recorder->stop();
        if (!std::filesystem::exists(m_configuration.outputURL))
            throw VantroError(VantroError::Kind::noRecordingData);
        return metadata;
    }

    RecorderStatus status() override {
        auto* running = m_running.load();
        if (running == nullptr)
            return {};
        const auto statistics = running->statistics();
        return {.framesDropped = statistics.framesDropped,
                .isCapturing = statistics.condition == RecordingCondition::recording};
    }

  private:
    const RecorderConfiguration m_configuration;
    std::unique_ptr<CapturePlatform> m_platform;
    std::unique_ptr<ScreenRecorder> m_recorder;
    std::atomic<ScreenRecorder*> m_running = nullptr; ///< once it has started
};

} // namespace

DesktopRecording::DesktopRecording() = default;
DesktopRecording::~DesktopRecording() = default;

std::vector<ShareableDisplay> DesktopRecording::displays() {
    if (!preflight())
        return {};
    auto content = m_platform->shareableContent();
    return content ? std::move(content->displays) : std::vector<ShareableDisplay>();
}

std::shared_ptr<Recorder> DesktopRecording::makeRecorder(RecorderConfiguration configuration) {
    return std::make_shared<DesktopRecorder>(std::move(configuration));
}

bool DesktopRecording::preflight() {
    if (m_platform != nullptr && m_platform->shareableContent())
        return true;
    try {
        m_platform = connectDesktop();
        return true;
    } catch (const VantroError&) {
        m_platform.reset();
        return false;
    }
}

std::expected<ShareableContent, std::string> listShareableContent() {
    try {
        return shareableContent(*connectDesktop());
    } catch (const VantroError& error) {
        return std::unexpected(error.message());
    }
}

void runExport(const ExportJob& job, const std::function<void(double fraction)>& progress,
               const std::stop_token& cancelled) {
    auto renderer = makeRenderer(RendererChoice::automatic);
    if (job.format == ExportFormat::gif)
        GIFExporter(std::move(renderer)).run(job.recording, job.output, progress, cancelled);
    else
        VideoExporter(std::move(renderer))
            .run(job.recording, job.resolution, job.output, progress, cancelled);
}

PreviewSource exportPreview() {
    return {
        .duration =
            [](const EditedRecording& recording) { return inspect(recording, 0).outputDuration; },
        .picture =
            [](const EditedRecording& recording, double time) {
                return composeStillFrame(recording, ExportResolution::original,
                                         insideOutput(recording, time),
                                         makeRenderer(RendererChoice::automatic));
            }};
}

} // namespace vantro
