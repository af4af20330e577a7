#include "app/cli/CommandLine.h"

#include "app/cli/Commands.h"
#include "app/cli/Interrupt.h"
#include "app/cli/ManualPage.h"
#include "app/cli/ShellCompletion.h"
#include "app/cli/StatusLine.h"
#include "app/files/ImportMovie.h"
#include "app/files/ProjectPackage.h"
#include "base/Log.h"
#include "model/VantroError.h"

#include <fmt/format.h>

namespace vantro::app::cli {
namespace {

void report(const model::VantroError& error) {
    tell(fmt::format("vantro: {}\n", error.what()));
    if (!error.recoverySuggestion().empty())
        tell(fmt::format("{}\n", error.recoverySuggestion()));
}

int runAction(const CommandAction& action) try {
    return action();
} catch (const model::VantroError& error) {
    report(error);
    return exitFailure;
} catch (const base::UsageError& error) {
    tell(fmt::format("vantro: {}\n", error.what()));
    return exitUsage;
} catch (const std::bad_alloc&) {
    tell("vantro: out of memory\n");
    return exitFailure;
} catch (const std::exception& error) {
    tell(fmt::format("vantro: {}\n", error.what()));
    return exitFailure;
}

/// What `vantro NAME.vantro` opens, or `vantro NAME.mp4`.
std::optional<std::filesystem::path> fileToEdit(int argc, const char* const* argv) {
    std::filesystem::path path(argc == 2 ? argv[1] : "");
    if (!path.has_filename()) // as shells complete the names of folders
        path = path.parent_path();
    if (path.extension() != files::package::extension && !files::hasMovieName(path))
        return {};
    return path;
}

int runEditor(const std::filesystem::path& file, const WindowCommands& windows) {
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        throw model::VantroError(model::VantroError::Kind::projectOpenFailed,
                                 fmt::format("{}: no such {}", file.string(),
                                             files::hasMovieName(file) ? "file" : "project"));
    return windows.edit(std::filesystem::absolute(file));
}

/// What packages install beside the program, made of its own commands: `--completion SHELL` and
/// `--manual-page`.
std::optional<std::string> document(const base::CommandLineReader& app, int argc,
                                    const char* const* argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.size() == 2 && words[0] == "--completion")
        return completionScript(app.description(), words[1]);
    if (words == std::vector<std::string>{"--manual-page"})
        return manualPage(app.description(), VANTRO_VERSION);
    return {};
}

} // namespace

int runCommandLine(int argc, const char* const* argv, const WindowCommands& windows) {
    if (const auto file = fileToEdit(argc, argv))
        return runAction([&] { return runEditor(*file, windows); });
    const InterruptWatcher interrupts;
    base::CommandLineReader app{"Vantro records the screen and zooms into every click.", "vantro"};
    app.requireCommand();
    app.version(VANTRO_VERSION);
    bool verbose = false;
    app.flag("--verbose", verbose, "Say more on standard error");

    CommandAction action;
    addDisplaysCommand(app, action);
    addWindowsCommand(app, action);
    addDevicesCommand(app, action);
    addDoctorCommand(app, action);
    addRecordCommand(app, action, interrupts.token(), windows);
    addControlCommands(app, action);
    addExportCommand(app, action, interrupts.token());
    addFrameCommand(app, action);
    addInspectCommand(app, action);
    addPackCommands(app, action);
    addRecoverCommand(app, action, windows);
    addPlayCommand(app, action, interrupts.token(), windows);
    if (const auto text = document(app, argc, argv)) {
        fmt::print("{}", *text);
        return exitSuccess;
    }
    if (const auto exitCode = app.read(argc, argv))
        return *exitCode;
    // A command itself says what went wrong, once.
    base::configureLog(verbose ? base::LogLevel::info : base::LogLevel::fatal);
    return runAction(action);
}

} // namespace vantro::app::cli
