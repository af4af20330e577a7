#include "app/cli/CommandLine.h"
#include "program/Application.h"
#include "program/PlayProgram.h"

int main(int argc, char** argv) {
    using namespace vantro;
    const app::cli::WindowCommands windows{
        .edit = [&](const auto& project) { return program::runApplication(argc, argv, project); },
        .play = [&](const auto& request) { return program::playInWindow(argc, argv, request); }};
    return argc > 1 ? app::cli::runCommandLine(argc, argv, windows)
                    : program::runApplication(argc, argv);
}
