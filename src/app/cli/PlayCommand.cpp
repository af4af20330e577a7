#include "app/cli/Commands.h"
#include "app/cli/CommonOptions.h"
#include "app/cli/WindowCommands.h"
#include "app/files/ProjectStores.h"

#include <iostream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace vantro::app::cli {
namespace {

struct Options {
    std::filesystem::path project;
    std::optional<double> seconds;
    std::string renderer = "auto";
    bool muted = false;
    bool statistics = false;
    bool json = false;
};

void printJson(const PlayReport& report) {
    nlohmann::ordered_json document{{"seconds", report.seconds},
                                    {"shown", report.shown},
                                    {"dropped", report.dropped},
                                    {"late", report.late}};
    if (report.soundOffset)
        document["soundOffset"] = *report.soundOffset;
    std::cout << document.dump(2) << '\n';
}

void printText(const PlayReport& report) {
    fmt::print("{} pictures shown, {} dropped, {} late in {:.1f} s\n", report.shown, report.dropped,
               report.late, report.seconds);
    if (report.soundOffset)
        fmt::print("sound and picture within {:.1f} ms (95 %)\n", *report.soundOffset * 1000);
}

int runPlay(const Options& options, const std::stop_token& interrupted,
            const WindowCommands& windows) {
    const auto report = windows.play({.project = files::readProjectFile(options.project),
                                      .renderer = options.renderer,
                                      .seconds = options.seconds,
                                      .muted = options.muted,
                                      .interrupted = interrupted});
    if (options.json)
        printJson(report);
    else if (options.statistics)
        printText(report);
    return interrupted.stop_requested() ? exitInterrupted : exitSuccess;
}

} // namespace

void addPlayCommand(base::Command app, CommandAction& action, const std::stop_token& interrupted,
                    const WindowCommands& windows) {
    auto options = std::make_shared<Options>();
    auto command = app.command("play", "Play a project's film in a window");
    addProjectArgument(command, options->project);
    command.option("--seconds", options->seconds, "Play so long, then end").within(0.1, 1e6);
    addRendererOption(command, options->renderer);
    command.flag("--mute", options->muted, "Play without sound");
    command.flag("--stats", options->statistics, "Print how many pictures were shown in time");
    command.flag("--json", options->json, "Print that as JSON");
    command.whenChosen([options, &action, interrupted, &windows] {
        action = [options, interrupted, &windows] {
            return runPlay(*options, interrupted, windows);
        };
    });
}

} // namespace vantro::app::cli
