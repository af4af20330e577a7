#include "app/cli/CommandLine.h"
#include "program/Application.h"

int main(int argc, char** argv) {
    return argc > 1 ? vantro::app::cli::runCommandLine(argc, argv)
                    : vantro::program::runApplication(argc, argv);
}
