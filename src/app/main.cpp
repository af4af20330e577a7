#include "app/cli/CommandLine.h"

int main(int argc, char** argv) {
    return vantro::runCommandLine(argc, argv);
}
