#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace vantro::test {

/// Runs `ffmpeg -y <arguments>` in the folder of `output`, quoting as in a shell, and fails the
/// test when that fails.
inline void runFfmpeg(const std::string& arguments, const std::filesystem::path& output) {
    const std::string command = "cd '" + output.parent_path().string() +
                                "' && ffmpeg -nostdin -v error -y " + arguments + " '" +
                                output.string() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0) << command; // NOLINT(concurrency-mt-unsafe)
}

} // namespace vantro::test
