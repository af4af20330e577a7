#include "app/Desktop.h"
#include "app/cli/Commands.h"
#include "app/cli/Interrupt.h"
#include "app/cli/RecordOptions.h"
#include "app/cli/RecordingControl.h"
#include "app/cli/RecordingWatch.h"
#include "app/cli/StatusLine.h"
#include "app/files/DiskForecast.h"
#include "app/files/FinishRecording.h"
#include "app/files/ProjectPackage.h"
#include "app/files/ProjectStores.h"
#include "app/files/RecordingFolder.h"
#include "base/HostClock.h"
#include "capture/session/RecordingSession.h"
#include "model/VantroError.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <system_error>

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <sys/resource.h>

namespace vantro::app::cli {
namespace {

constexpr double countdownPeriod = 0.25; // seconds

/// The folder that a recording is made in, removed once the package holds its files.
struct RecordingFolder {
    std::filesystem::path path = files::makeRecordingDirectory();
    RecordingFolder() = default;
    RecordingFolder(const RecordingFolder&) = delete;
    RecordingFolder& operator=(const RecordingFolder&) = delete;
    ~RecordingFolder() {
        std::error_code ignored;
        if (isSaved)
            std::filesystem::remove_all(path, ignored);
        else
            std::filesystem::remove(path, ignored); // only if nothing was recorded into it
    }
    bool isSaved = false;
};

/// What the process has used and when, to tell what a recording cost.
struct ProcessorUse {
    base::HostTime when = base::hostNow();
    double seconds = processorSeconds();

    /// The share of one core since then.
    double average() const {
        return (processorSeconds() - seconds) /
               std::max(base::inSeconds(base::hostNow() - when), 1e-3);
    }

    static double processorSeconds() {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        const auto inSeconds = [](const timeval& time) {
            return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
        };
        return inSeconds(usage.ru_utime) + inSeconds(usage.ru_stime);
    }
};

/// False when it was interrupted.
bool waitForStart(double delay, const std::stop_token& interrupted) {
    StatusLine line;
    const auto started = base::hostNow();
    while (!interrupted.stop_requested()) {
        const double remaining = delay - base::inSeconds(base::hostNow() - started);
        if (remaining <= 0)
            return true;
        line.show(
            fmt::format("Recording starts in {:.0f} s  (Ctrl-C to cancel)", std::ceil(remaining)));
        waitFor(std::min(countdownPeriod, remaining), interrupted);
    }
    return false;
}

void requireNewPackage(const RecordOptions& options) {
    if (const auto problem = files::packageProblem(options.output, options.force); !problem.empty())
        throw model::VantroError(model::VantroError::Kind::projectSaveFailed, problem);
}

/// Ends the recording; nothing where the user has ended the sharing before its first picture. A
/// failure also tells how to get at what there is of it.
std::optional<model::RecordingMetadata> finish(capture::Recorder& recorder,
                                               const std::filesystem::path& folder) {
    try {
        return recorder.stop();
    } catch (const model::VantroError& error) {
        if (capture::wasTakenBack(error, recorder))
            return {};
        throw model::VantroError(
            error.kind(), fmt::format("{} (what there is: vantro recover '{}' --output NAME{})",
                                      error.message(), folder.string(), files::package::extension));
    }
}

std::string targetText(const capture::RecordingTarget& target) {
    const auto* what = target.mode == model::CaptureMode::window   ? "a window"
                       : target.mode == model::CaptureMode::screen ? "a screen"
                                                                   : "an area";
    return fmt::format("Recording {} of {}x{} pixels\n", what, target.width, target.height);
}

int cancelled() {
    tell("vantro: cancelled, nothing was recorded\n");
    return exitInterrupted;
}

/// A desktop whose dialog cuts areas out itself does not tell where they lie.
void requireArea(const capture::RecordingRequest& request, capture::Recorder& recorder) {
    if (request.mode != model::CaptureMode::area || request.area != model::Rect{})
        return;
    const auto content = recorder.chosen();
    if (!content || content->place)
        throw model::VantroError(model::VantroError::Kind::invalidSelection);
}

/// False when it was interrupted.
bool chooseAndWait(capture::RecordingSession& recorder, const RecordOptions& options,
                   const std::stop_token& interrupted) {
    // A mistake is told before the wait; where everything is, is looked up again at the start.
    if (!recorder.choose(interrupted) ||
        (options.delay > 0 && !waitForStart(options.delay, interrupted)))
        return false;
    requireArea(options.request, recorder);
    if (isWaylandSession()) // what the dialog gave is news
        tell(targetText(recorder.target()));
    return true;
}

struct Recorded {
    double processorShare = 0; ///< of one core, while it was recorded
    capture::RecordingStatistics statistics;
    RecordingEnd end = RecordingEnd::interrupt;
    model::Recording recording;
};

/// A failure also tells where the recording is.
void save(const model::Project& project, const RecordOptions& options,
          const std::filesystem::path& folder) {
    try {
        files::saveProject(options.output, project, options.force);
    } catch (const model::VantroError& error) {
        throw model::VantroError(error.kind(), fmt::format("{} (the recording is kept in {})",
                                                           error.message(), folder.string()));
    }
}

void printSummary(const RecordOptions& options, const Recorded& recorded) {
    const auto& metadata = recorded.recording.metadata();
    const auto& statistics = recorded.statistics;
    const auto bytes = std::filesystem::file_size(options.output / files::package::recordingFile);
    // On average: a screen that rests needs no pictures.
    const double rate =
        static_cast<double>(statistics.framesCaptured) / std::max(metadata.endTime, 1e-3);
    if (options.json)
        std::cout << nlohmann::ordered_json{{"output", options.output.string()},
                                            {"duration", metadata.endTime},
                                            {"frames", statistics.framesCaptured},
                                            {"framesPerSecond", rate},
                                            {"dropped", statistics.framesDropped},
                                            {"clicks", metadata.clickEvents.size()},
                                            {"bytes", bytes},
                                            {"cpuPercent", 100 * recorded.processorShare},
                                            {"webcamFrames", statistics.webcamFramesCaptured},
                                            {"webcamDropped", statistics.webcamFramesDropped},
                                            {"missing", statistics.lostSources},
                                            {"endedBy", rawValue(recorded.end)}}
                  << '\n';
    else
        fmt::print("Recorded {}: {:.1f} s, {} frames ({:.1f} a second), {} dropped, {} clicks, "
                   "{}{}, {:.0f} % CPU\n",
                   options.output.string(), metadata.endTime, statistics.framesCaptured, rate,
                   statistics.framesDropped, metadata.clickEvents.size(),
                   sizeText(static_cast<double>(bytes)),
                   recorded.end == RecordingEnd::maxSize ? " (the size limit)" : "",
                   100 * recorded.processorShare);
}

void tellWhyItEnded(const Recorded& recorded) {
    if (recorded.end == RecordingEnd::diskFull)
        tell("vantro: the disk is nearly full; the recording holds what came until then\n");
    if (recorded.statistics.condition == capture::RecordingCondition::streamStopped)
        tell(fmt::format("vantro: {}; the recording holds what it showed until then\n",
                         recorded.statistics.streamError));
}

int runRecord(const RecordOptions& options, const std::stop_token& interrupted,
              const WindowCommands& windows) {
    requireNewPackage(options);
    capture::RecordingSession recorder(options.request, connectDesktop, desktopSound(),
                                       desktopCameras());
    if (!chooseAndWait(recorder, options, interrupted))
        return cancelled();
    const auto name = files::defaultRecordingName();
    RecordingFolder folder;
    const auto movie = folder.path / files::package::recordingFile;
    if (const auto problem = files::diskProblem(movie); !problem.empty())
        throw model::VantroError(model::VantroError::Kind::captureStartFailed, problem);
    const ProcessorUse before;
    if (!recorder.start(movie))
        return cancelled();
    const RecordingControl control(recorder, interrupted); // who stops it waits for the project
    const auto end = watchRecording(recorder, movie, options.limits, control.ending());
    auto metadata = finish(recorder, folder.path);
    if (!metadata)
        return cancelled();
    const Recorded recorded{.processorShare = before.average(),
                            .statistics = recorder.statistics(),
                            .end = end,
                            .recording = files::finishRecording(movie, std::move(*metadata))};
    save({.name = name,
          .recording = recorded.recording,
          .edit = model::freshEdit(recorded.recording.metadata(), {}, windows.lookOfNew())},
         options, folder.path);
    folder.isSaved = true;
    printSummary(options, recorded);
    tellWhyItEnded(recorded);
    return exitSuccess;
}

} // namespace

void addRecordCommand(base::Command app, CommandAction& action, const std::stop_token& interrupted,
                      const WindowCommands& windows) {
    auto options = std::make_shared<RecordOptions>();
    auto command = app.command("record", "Record the screen into a project");
    addRecordOptions(command, *options);
    command.whenChosen([options, &action, interrupted, &windows] {
        action = [options, interrupted, &windows] {
            return runRecord(*options, interrupted, windows);
        };
    });
}

} // namespace vantro::app::cli
