#include "app/cli/CommandLine.h"

#include "app/cli/Commands.h"
#include "app/cli/Interrupt.h"
#include "app/cli/StatusLine.h"
#include "base/Log.h"
#include "model/VantroError.h"

#include <CLI/CLI.hpp>
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
} catch (const CLI::ParseError& error) {
    tell(fmt::format("vantro: {}\n", error.what()));
    return exitUsage;
} catch (const std::bad_alloc&) {
    tell("vantro: out of memory\n");
    return exitFailure;
} catch (const std::exception& error) {
    tell(fmt::format("vantro: {}\n", error.what()));
    return exitFailure;
}

} // namespace

int runCommandLine(int argc, const char* const* argv) {
    const InterruptWatcher interrupts;
    CLI::App app{"Vantro records the screen and zooms into every click.", "vantro"};
    app.require_subcommand(1);
    app.fallthrough(); // --verbose may stand after the sub-command too
    app.set_version_flag("--version", VANTRO_VERSION);
    bool verbose = false;
    app.add_flag("--verbose", verbose, "Say more on standard error");

    CommandAction action;
    addDisplaysCommand(app, action);
    addWindowsCommand(app, action);
    addRecordCommand(app, action, interrupts.token());
    addExportCommand(app, action, interrupts.token());
    addFrameCommand(app, action);
    addInspectCommand(app, action);
    addRecoverCommand(app, action);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? exitSuccess : exitUsage;
    }
    // A command itself says what went wrong, once.
    base::configureLog(verbose ? base::LogLevel::info : base::LogLevel::fatal);
    return runAction(action);
}

} // namespace vantro::app::cli
