#include "app/Desktop.h"
#include "app/FinishedRecording.h"
#include "app/ProjectPackage.h"
#include "app/RecordingFolder.h"
#include "app/cli/Commands.h"
#include "app/cli/CommonOptions.h"
#include "app/cli/Interrupt.h"
#include "app/cli/StatusLine.h"
#include "base/HostClock.h"
#include "capture/ScreenRecorder.h"
#include "model/VantroError.h"

#include <algorithm>
#include <iostream>
#include <system_error>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace vantro {
namespace {

constexpr double longestRecording = 1e6; // seconds, eleven days: a slip of the keyboard beyond
constexpr double statusPeriod = 0.25; // seconds; also how soon the end of a stream is noticed

struct Options {
    std::filesystem::path output;
    std::string mode = "screen";
    std::uint32_t displayID = 0;
    double seconds = -1; ///< until interrupted when negative
    bool force = false;
    bool json = false;
};

/// The folder that a recording is made in, removed once the package holds its files.
struct RecordingFolder {
    std::filesystem::path path = makeRecordingDirectory();
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

RecordingChoice chooseScreen(const ShareableContent& content, std::uint32_t displayID) {
    const auto& displays = content.displays;
    const auto display = displayID == 0 ? displays.begin()
                                        : std::ranges::find(displays, displayID,
                                                            &ShareableDisplay::displayID);
    if (display == displays.end())
        throw VantroError(VantroError::Kind::captureStartFailed, "Display not found");
    return {.captureMode = CaptureMode::screen,
            .displayID = display->displayID,
            .captureRect = display->frame,
            .selectedWindow = {}};
}

/// Shows how a recording goes until its time is up, it is interrupted, or it cannot go on.
void watch(ScreenRecorder& recorder, double seconds, const std::stop_token& interrupted) {
    StatusLine line;
    const auto started = hostNow();
    for (;;) {
        const double elapsed = inSeconds(hostNow() - started);
        const auto statistics = recorder.statistics();
        const bool timeIsUp = seconds >= 0 && elapsed >= seconds;
        if (timeIsUp || interrupted.stop_requested() ||
            statistics.condition != RecordingCondition::recording)
            return;
        line.show(fmt::format("Recording {}  {} frames, {} dropped  (Ctrl-C to stop)",
                              clockText(elapsed), statistics.framesCaptured,
                              statistics.framesDropped));
        waitFor(seconds < 0 ? statusPeriod : std::min(statusPeriod, seconds - elapsed), interrupted);
    }
}

ProjectData freshProject(const FinishedRecording& finished, std::string name) {
    ProjectData project;
    project.recordingName = std::move(name);
    project.metadata = finished.metadata;
    project.editableClickEvents = finished.editableClickEvents;
    project.segments = finished.segments;
    return project;
}

void printSummary(const Options& options, const FinishedRecording& finished,
                  const RecordingStatistics& statistics) {
    const auto bytes = std::filesystem::file_size(options.output / package::recordingFile);
    const auto& metadata = finished.metadata;
    if (options.json)
        std::cout << nlohmann::ordered_json{{"output", options.output.string()},
                                            {"duration", metadata.endTime},
                                            {"frames", statistics.framesCaptured},
                                            {"dropped", statistics.framesDropped},
                                            {"clicks", metadata.clickEvents.size()},
                                            {"bytes", bytes}}
                  << '\n';
    else
        fmt::print("Recorded {}: {:.1f} s, {} frames, {} dropped, {} clicks, {}\n",
                   options.output.string(), metadata.endTime, statistics.framesCaptured,
                   statistics.framesDropped, metadata.clickEvents.size(),
                   sizeText(static_cast<double>(bytes)));
}

void requireNewPackage(const Options& options) {
    if (const auto problem = newPackageProblem(options.output, options.force); !problem.empty())
        throw VantroError(VantroError::Kind::projectSaveFailed, problem);
}

int runRecord(const Options& options, const std::stop_token& interrupted) {
    requireNewPackage(options);
    const auto platform = connectDesktop();
    const auto name = defaultRecordingName();
    RecordingFolder folder;
    const auto movie = folder.path / package::recordingFile;
    ScreenRecorder recorder(
        {.outputURL = movie,
         .choice = chooseScreen(shareableContent(*platform), options.displayID)},
        *platform);
    recorder.start();
    watch(recorder, options.seconds, interrupted);
    auto metadata = recorder.stop();
    const auto statistics = recorder.statistics();
    if (!std::filesystem::exists(movie))
        throw VantroError(VantroError::Kind::noRecordingData);

    const auto finished = finishRecording(movie, std::move(metadata));
    try {
        saveNewProject(options.output, movie, freshProject(finished, name), options.force);
    } catch (const VantroError& error) {
        throw VantroError(error.kind(), fmt::format("{} (the recording is kept in {})",
                                                    error.message(), folder.path.string()));
    }
    folder.isSaved = true;
    printSummary(options, finished, statistics);
    if (statistics.condition == RecordingCondition::streamStopped)
        fmt::print(stderr, "vantro: the display went away; the recording holds what it showed\n");
    return exitSuccess;
}

} // namespace

void addRecordCommand(CLI::App& app, CommandAction& action, const std::stop_token& interrupted) {
    auto options = std::make_shared<Options>();
    auto* command = app.add_subcommand("record", "Record the screen into a project");
    command->add_option("--output,-o", options->output, "The project to make, NAME.vantro")
        ->required()
        ->type_name("NAME")
        ->check(endsIn({package::extension}));
    command->add_option("--mode", options->mode, "What to record (default: screen)")
        ->type_name("screen")
        ->check(CLI::IsMember({"screen"}));
    command
        ->add_option("--display", options->displayID,
                     "The display to record, by the number that `vantro displays` prints")
        ->type_name("ID");
    command->add_option("--seconds", options->seconds, "How long to record (default: until Ctrl-C)")
        ->type_name("S")
        ->check(CLI::Range(0.1, longestRecording));
    command->add_flag("--force", options->force, "Replace an existing project");
    command->add_flag("--json", options->json, "Print the summary as JSON");
    command->callback([options, &action, interrupted] {
        action = [options, interrupted] { return runRecord(*options, interrupted); };
    });
}

} // namespace vantro
