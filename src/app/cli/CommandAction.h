#pragma once

#include <functional>

namespace vantro::app::cli {

/// Exit codes that scripts rely on.
enum ExitCode : int {
    exitSuccess = 0,
    exitFailure = 1,       ///< one message on standard error says what and where
    exitUsage = 2,         ///< wrong options or arguments
    exitInterrupted = 130, ///< cancelled by Ctrl-C
};

/// What a sub-command leaves to be run once the whole line has been understood.
using CommandAction = std::function<int()>;

} // namespace vantro::app::cli
