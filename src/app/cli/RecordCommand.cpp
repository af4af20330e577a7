#include "app/Desktop.h"
#include "app/cli/Commands.h"
#include "app/cli/CommonOptions.h"
#include "app/cli/Interrupt.h"
#include "app/cli/RecordingControl.h"
#include "app/cli/RecordingWatch.h"
#include "app/cli/StatusLine.h"
#include "app/files/DiskForecast.h"
#include "app/files/FinishRecording.h"
#include "app/files/ProjectPackage.h"
#include "app/files/ProjectStores.h"
#include "app/files/RecordingFolder.h"
#include "base/HostClock.h"
#include "capture/RecordingSession.h"
#include "model/VantroError.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iostream>
#include <system_error>

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <sys/resource.h>

namespace vantro::app::cli {
namespace {

constexpr double longestRecording = 1e6; // seconds, eleven days: a slip of the keyboard beyond
constexpr double longestDelay = 3600;    // seconds
constexpr double countdownPeriod = 0.25; // seconds

struct Options {
    std::filesystem::path output;
    capture::RecordingRequest request;
    double delay = 0; ///< seconds before the start
    RecordingLimits limits;
    bool force = false;
    bool json = false;
};

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

void printSummary(const Options& options, const model::RecordingMetadata& metadata,
                  const capture::RecordingStatistics& statistics, RecordingEnd end,
                  double processorShare) {
    const auto bytes = std::filesystem::file_size(options.output / files::package::recordingFile);
    if (options.json)
        std::cout << nlohmann::ordered_json{{"output", options.output.string()},
                                            {"duration", metadata.endTime},
                                            {"frames", statistics.framesCaptured},
                                            {"dropped", statistics.framesDropped},
                                            {"clicks", metadata.clickEvents.size()},
                                            {"bytes", bytes},
                                            {"cpuPercent", 100 * processorShare},
                                            {"webcamFrames", statistics.webcamFramesCaptured},
                                            {"webcamDropped", statistics.webcamFramesDropped},
                                            {"missing", statistics.lostSources},
                                            {"endedBy", rawValue(end)}}
                  << '\n';
    else
        fmt::print("Recorded {}: {:.1f} s, {} frames, {} dropped, {} clicks, {}{}, {:.0f} % CPU\n",
                   options.output.string(), metadata.endTime, statistics.framesCaptured,
                   statistics.framesDropped, metadata.clickEvents.size(),
                   sizeText(static_cast<double>(bytes)),
                   end == RecordingEnd::maxSize ? " (the size limit)" : "", 100 * processorShare);
}

void requireNewPackage(const Options& options) {
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

int runRecord(const Options& options, const std::stop_token& interrupted) {
    requireNewPackage(options);
    capture::RecordingSession recorder(options.request, connectDesktop, desktopSound(),
                                       desktopCameras());
    // A mistake is told before the wait; where everything is, is looked up again at the start.
    if (!recorder.choose(interrupted) ||
        (options.delay > 0 && !waitForStart(options.delay, interrupted)))
        return cancelled();
    requireArea(options.request, recorder);
    if (isWaylandSession()) // what the dialog gave is news
        tell(targetText(recorder.target()));
    const auto name = files::defaultRecordingName();
    RecordingFolder folder;
    const auto movie = folder.path / files::package::recordingFile;
    if (const auto problem = files::diskProblem(movie); !problem.empty())
        throw model::VantroError(model::VantroError::Kind::captureStartFailed, problem);
    const ProcessorUse before;
    if (!recorder.start(movie))
        return cancelled();
    const RecordingControl control(recorder, interrupted);
    const auto end = watchRecording(recorder, movie, options.limits, control.ending());
    auto metadata = finish(recorder, folder.path);
    if (!metadata)
        return cancelled();
    const double processorShare = before.average();
    const auto statistics = recorder.statistics();
    const auto recording = files::finishRecording(movie, std::move(*metadata));
    try {
        files::saveProject(
            options.output,
            {.name = name, .recording = recording, .edit = model::freshEdit(recording.metadata())},
            options.force);
    } catch (const model::VantroError& error) {
        throw model::VantroError(error.kind(), fmt::format("{} (the recording is kept in {})",
                                                           error.message(), folder.path.string()));
    }
    folder.isSaved = true;
    printSummary(options, recording.metadata(), statistics, end, processorShare);
    if (end == RecordingEnd::diskFull)
        tell("vantro: the disk is nearly full; the recording holds what came until then\n");
    if (statistics.condition == capture::RecordingCondition::streamStopped)
        tell(fmt::format("vantro: {}; the recording holds what it showed until then\n",
                         statistics.streamError));
    return exitSuccess;
}

/// Four finite numbers between commas.
std::optional<model::Rect> parseRect(const std::string& text) {
    std::array<double, 4> numbers{};
    const char* position = text.data();
    const char* const end = text.data() + text.size();
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        if (index > 0) {
            if (position == end || *position != ',')
                return {};
            ++position;
        }
        const auto [next, error] = std::from_chars(position, end, numbers[index]);
        if (error != std::errc() || !std::isfinite(numbers[index]))
            return {};
        position = next;
    }
    if (position != end)
        return {};
    return model::Rect{.x = numbers[0], .y = numbers[1], .width = numbers[2], .height = numbers[3]};
}

void addRequestOptions(base::Command command, capture::RecordingRequest& request) {
    const auto mode = command
                          .option(
                              "--mode",
                              [&request](const std::string& text) {
                                  request.mode = model::captureModeFrom(text).value();
                              },
                              "What to record (default: screen)")
                          .valueName("screen|area|window")
                          .oneOf({"screen", "area", "window"});
    command
        .option("--display", request.displayID,
                "The display to record, by the number that `vantro displays` prints")
        .valueName("ID");
    command
        .option(
            "--rect",
            [&request](const std::string& text) { request.area = parseRect(text).value(); },
            "The area to record, in points of the desktop; on Wayland from the "
            "top left corner of the screen that is chosen")
        .valueName("X,Y,W,H")
        .check([](const std::string& text) {
            return parseRect(text) ? std::string() : "four numbers X,Y,W,H are needed, not " + text;
        })
        .needs(mode);
    command.option("--fps", request.frameRate, "Frames a second, at most (default: 60)")
        .valueName("60|30|24|15")
        .oneOf({"60", "30", "24", "15"});
    const auto window =
        command
            .option("--window", request.windowID,
                    "The window to record, by the number that `vantro windows` prints")
            .valueName("ID")
            .needs(mode);
    command.flag("--choose", request.chooseAgain,
                 "Where the desktop asks what to record: ask anew, though it was chosen before");
    command
        .option("--window-title", request.windowTitle,
                "The front-most window with this text in its title, in any case")
        .valueName("TEXT")
        .needs(mode)
        .excludes(window);
}

void addSourceOptions(base::Command command, capture::SourceSwitches& sources) {
    sources.systemSound = true; // as in the window
    command.flag("--system-audio,!--no-system-audio", sources.systemSound,
                 "Record what the computer plays (default: yes)");
    command
        .option(
            "--microphone",
            [&sources](const std::string& device) {
                sources.microphone = true;
                sources.microphoneDevice = device;
            },
            "Record a microphone too: the default one, or one that `vantro devices` prints")
        .valueName("DEVICE")
        .optionalValue();
    command
        .option(
            "--webcam",
            [&sources](const std::string& device) {
                sources.camera = true;
                sources.cameraDevice = device;
            },
            "Record a camera too: the default one, or one that `vantro devices` prints")
        .valueName("DEVICE")
        .optionalValue();
}

} // namespace

void addRecordCommand(base::Command app, CommandAction& action,
                      const std::stop_token& interrupted) {
    auto options = std::make_shared<Options>();
    auto command = app.command("record", "Record the screen into a project");
    command.option("--output,-o", options->output, "The project to make, NAME.vantro")
        .required()
        .valueName("NAME")
        .check(endsIn({files::package::extension}));
    addRequestOptions(command, options->request);
    addSourceOptions(command, options->request.sources);
    command.option("--delay", options->delay, "How long to wait before the start")
        .valueName("S")
        .within(0.0, longestDelay);
    command
        .option("--seconds", options->limits.seconds, "How long to record (default: until Ctrl-C)")
        .valueName("S")
        .within(0.1, longestRecording);
    command
        .option(
            "--max-size",
            [&limits = options->limits](const std::string& text) {
                limits.bytes = parseByteSize(text);
            },
            "Stop when the movie is about this large, for example 500M or 2G")
        .valueName("SIZE")
        .check([](const std::string& text) {
            return parseByteSize(text) ? std::string()
                                       : text + " is no size such as 500M, 1.5G or 800000";
        });
    command.flag("--force", options->force, "Replace an existing project");
    command.flag("--json", options->json, "Print the summary as JSON");
    command.whenChosen([options, &action, interrupted] {
        action = [options, interrupted] { return runRecord(*options, interrupted); };
    });
}

} // namespace vantro::app::cli
