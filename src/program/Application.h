#pragma once

#include <filesystem>

namespace vantro::program {

/// Runs the windowed program, with a project or movie in its editor if one is named, until it is
/// quit and returns its exit status. Where no window can be opened it says so in one line and ends
/// with status 1. Called once, by main.
int runApplication(int& argc, char** argv, const std::filesystem::path& project = {});

} // namespace vantro::program
