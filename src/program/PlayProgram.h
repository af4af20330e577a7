#pragma once

#include "app/cli/WindowCommands.h"

namespace vantro::program {

/// Plays a film once in a window of its own, until it ends, the time is up or the window is closed.
/// Throws std::exception where the film cannot be played. Once, on the main thread, instead of the
/// windowed program.
app::cli::PlayReport playInWindow(int& argc, char** argv, const app::cli::PlayRequest& request);

} // namespace vantro::program
