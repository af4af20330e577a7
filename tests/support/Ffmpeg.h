#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace vantro::test {

/// Runs `ffmpeg -y <arguments>` in the folder of `output`, quoting as in a shell, and fails the
/// test when that fails.
inline void runFfmpeg(const std::string& arguments, const std::filesystem::path& output) {
    const std::string command = "cd '" + output.parent_path().string() +
                                "' && ffmpeg -nostdin -v error -y " + arguments + " '" +
                                output.string() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0) << command; // NOLINT(concurrency-mt-unsafe)
}

/// What `ffprobe <arguments>` says of a file.
inline nlohmann::json ffprobe(const std::string& arguments, const std::filesystem::path& file) {
    const auto command = "ffprobe -v error -of json " + arguments + " '" + file.string() + "'";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen(command.c_str(), "r"),
                                                               ::pclose);
    return nlohmann::json::parse(pipe.get());
}

} // namespace vantro::test
