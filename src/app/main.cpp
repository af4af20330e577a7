#include "app/cli/CommandLine.h"
#include "editor/Application.h"

int main(int argc, char** argv) {
    return argc > 1 ? vantro::runCommandLine(argc, argv) : vantro::runApplication(argc, argv);
}
