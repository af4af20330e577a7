#pragma once

#include "app/cli/WindowCommands.h"

namespace vantro::app::cli {

/// Parses and runs `vantro SUBCOMMAND …` and `vantro NAME.vantro`, which opens the editor. Never
/// throws: failures become a message and an exit code.
int runCommandLine(int argc, const char* const* argv, const WindowCommands& windows);

} // namespace vantro::app::cli
