#pragma once

namespace vantro::app::cli {

/// Parses and runs `vantro SUBCOMMAND …`. Never throws: failures become a message and an exit code.
int runCommandLine(int argc, const char* const* argv);

} // namespace vantro::app::cli
