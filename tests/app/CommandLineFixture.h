#pragma once

#include "app/files/ProjectStores.h"
#include "export/RecordingFixture.h"

#include <cstdio>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

namespace vantro::test {

struct Result {
    int exitCode = -1;
    std::string output; ///< standard output and error together
};

/// Runs the built program itself, as a shell would, with `environment` as env(1) takes it.
inline Result vantro(const std::string& arguments, const std::string& environment = "-u DISPLAY") {
    // The desktop that the tests are run on is nobody's business.
    const auto command = fmt::format("env -u WAYLAND_DISPLAY -u XDG_SESSION_TYPE {} '{}' {} 2>&1",
                                     environment, VANTRO_PROGRAM, arguments);
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        throw std::runtime_error("no shell");
    Result result;
    char chunk[4096];
    while (const auto count = std::fread(chunk, 1, sizeof chunk, pipe))
        result.output.append(chunk, count);
    const int status = ::pclose(pipe);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
    return result;
}

/// A project of a two-second recording with one click, as another program might have written it.
class CommandLine : public ::testing::Test {
  protected:
    CommandLine() {
        writeColorClock(folder / "recording.mov", 320, 180, 30, 2);
        metadata.frameRate = 30;
        metadata.endTime = 2;
        metadata.captureRect = {0, 0, 320, 180};
        metadata.cursorPositions = {{100, 50, 0}, {200, 90, 1}};
        edit.clickEvents = {
            {{.x = 200, .y = 90, .timestamp = 1, .startOffset = 0.5, .endOffset = 0.8}}};
        save("sample.vantro");
    }

    void save(const std::string& name) {
        app::files::saveProject(
            folder / name, {"sample", model::Recording(folder / "recording.mov", metadata), edit},
            true);
    }
    std::string path(const std::string& name) const { return "'" + (folder / name).string() + "'"; }
    bool exists(const std::string& name) const { return std::filesystem::exists(folder / name); }

    TemporaryFolder folder;
    model::RecordingMetadata metadata;
    model::Edit edit;
};

} // namespace vantro::test
