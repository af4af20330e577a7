#pragma once

#include "model/Project.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>

namespace vantro::app::cli {

/// What `vantro play` asks for.
struct PlayRequest {
    model::Project project;
    std::string renderer;          ///< as --renderer names it
    std::optional<double> seconds; ///< how long to play; none: to the end of the film
    bool muted = false;
    std::stop_token interrupted;
};

/// What a window showed of a film while it played.
struct PlayReport {
    double seconds = 0; ///< that it played
    std::uint64_t shown = 0;
    std::uint64_t dropped = 0; ///< due, and not on the window within one period
    std::uint64_t late = 0;    ///< shown, but more than half a period after they were due
    /// How far apart picture and sound were, seconds, at 95 of 100 pictures; none without sound.
    std::optional<double> soundOffset;
};

/// What the windowed program does and knows, which not every program that reads command lines has.
struct WindowCommands {
    /// Runs the windowed program on a project or a movie and returns its exit status.
    std::function<int(const std::filesystem::path& file)> edit;
    /// Plays in a window until the film ends or the window is closed. Throws std::exception.
    std::function<PlayReport(const PlayRequest& request)> play;
    /// Of new recordings, as the settings say now; nothing for the usual look.
    std::function<std::optional<model::Look>()> lookOfNew;
};

} // namespace vantro::app::cli
