#include "app/cli/CommandLine.h"
#include "program/Application.h"
#include "program/PlayProgram.h"
#include "ui/Preferences.h"

#include <string_view>

int main(int argc, char** argv) {
    using namespace vantro;
    const app::cli::WindowCommands windows{
        .edit =
            [&](const auto& file) { return program::runApplication(argc, argv, {.file = file}); },
        .play = [&](const auto& request) { return program::playInWindow(argc, argv, request); },
        .lookOfNew = [] { return ui::Preferences().look(); }};
    const std::string_view first = argc > 1 ? argv[1] : "";
    if (first == "--service" && argc == 2) // as the session bus starts it
        return program::runApplication(argc, argv, {.isService = true});
    if (first == "--action" && argc == 3) // as desktops without activation over the bus start it
        return program::runApplication(argc, argv, {.action = argv[2]});
    return argc > 1 ? app::cli::runCommandLine(argc, argv, windows)
                    : program::runApplication(argc, argv);
}
