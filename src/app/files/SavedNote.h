#pragma once

#include <filesystem>

namespace vantro::app::files {

/// Remembers beside a recording that a project holds it, whose movie is `saved`. Does nothing for
/// movies that do not lie where recordings are made; a failure is only logged. Any thread.
void noteSaved(const std::filesystem::path& movie, const std::filesystem::path& saved);

/// Whether a project still holds the recording that lies where recordings are made.
bool isSaved(const std::filesystem::path& movie);

} // namespace vantro::app::files
