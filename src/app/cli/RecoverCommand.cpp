#include "app/cli/Commands.h"
#include "app/cli/CommonOptions.h"
#include "app/cli/StatusLine.h"
#include "app/files/ProjectPackage.h"
#include "app/files/ProjectStores.h"
#include "app/files/RecordingRecovery.h"
#include "model/VantroError.h"

#include <chrono>
#include <iostream>

#include <fmt/chrono.h>
#include <nlohmann/json.hpp>

namespace vantro::app::cli {
namespace {

namespace fs = std::filesystem;

struct Options {
    fs::path folder;
    fs::path output;
    bool force = false;
    bool json = false;
};

std::string lastWritten(const fs::path& file) {
    std::error_code gone;
    const auto time = fs::last_write_time(file, gone);
    return fmt::format(
        "{:%Y-%m-%d %H:%M}",
        std::chrono::file_clock::to_sys(std::chrono::time_point_cast<std::chrono::seconds>(time)));
}

int listInterrupted(bool asJson) {
    const auto movies = files::interruptedRecordings();
    if (asJson) {
        auto list = nlohmann::ordered_json::array();
        for (const auto& movie : movies)
            list.push_back(movie.parent_path().string());
        std::cout << list << '\n';
        return exitSuccess;
    }
    if (movies.empty())
        fmt::print("No interrupted recording was found.\n");
    for (const auto& movie : movies)
        fmt::print("{}  {}\n", lastWritten(movie), movie.parent_path().string());
    return exitSuccess;
}

int runRecover(const Options& options, const WindowCommands& windows) {
    if (options.folder.empty())
        return listInterrupted(options.json);
    if (options.output.empty())
        throw base::UsageError("--output", "it is required");
    if (const auto problem = files::packageProblem(options.output, options.force); !problem.empty())
        throw model::VantroError(model::VantroError::Kind::projectSaveFailed, problem);
    const auto movie = options.folder / files::package::recordingFile;
    if (!fs::is_regular_file(movie))
        throw model::VantroError(model::VantroError::Kind::projectOpenFailed,
                                 fmt::format("{} holds no recording", options.folder.string()));
    const auto recording = files::recoverRecording(movie);
    const auto& metadata = recording.metadata();
    files::saveProject(options.output,
                       {.name = options.output.stem().string(),
                        .recording = recording,
                        .edit = model::freshEdit(metadata, {}, windows.lookOfNew())},
                       options.force);
    const auto bytes = fs::file_size(options.output / files::package::recordingFile);
    if (options.json)
        std::cout << nlohmann::ordered_json{{"output", options.output.string()},
                                            {"duration", metadata.endTime},
                                            {"clicks", metadata.clickEvents.size()},
                                            {"bytes", bytes}}
                  << '\n';
    else
        fmt::print("Recovered {}: {:.1f} s, {} clicks, {}\n", options.output.string(),
                   metadata.endTime, metadata.clickEvents.size(),
                   sizeText(static_cast<double>(bytes)));
    return exitSuccess;
}

} // namespace

void addRecoverCommand(base::Command app, CommandAction& action, const WindowCommands& windows) {
    auto options = std::make_shared<Options>();
    auto command = app.command(
        "recover", "Make a project of a recording that was interrupted, or list those there are");
    command
        .option("folder", options->folder,
                "The folder of the recording (default: list what can be recovered)")
        .valueName("FOLDER")
        .existingFolder();
    command.option("--output,-o", options->output, "The project to make, NAME.vantro")
        .valueName("NAME")
        .check(endsIn({files::package::extension}));
    command.flag("--force", options->force, "Replace an existing project");
    command.flag("--json", options->json, "Print the result as JSON");
    command.whenChosen([options, &action, &windows] {
        action = [options, &windows] { return runRecover(*options, windows); };
    });
}

} // namespace vantro::app::cli
