#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vantro::program {

/// What the windowed program is started for. A plain record.
struct StartRequest {
    std::filesystem::path file{}; ///< a project or movie to be edited; absolute; empty: none
    std::string action{};         ///< of the desktop entry; empty: none
    bool isService = false;       ///< by the session bus: the window waits until it is asked for

    std::vector<std::filesystem::path> files() const {
        return file.empty() ? std::vector<std::filesystem::path>() : std::vector{file};
    }
};

/// Runs the windowed program until it is quit and returns its exit status; where one runs already,
/// hands the request over to it. Where no window can be opened it says so in one line and ends with
/// status 1. Called once, by main.
int runApplication(int& argc, char** argv, const StartRequest& request = {});

} // namespace vantro::program
