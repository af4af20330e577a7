#include "app/ProjectPackage.h"
#include "export/RecordingFixture.h"
#include "model/Json.h"

#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

namespace vantro {
namespace {

using namespace vantro::testing;
using ::testing::HasSubstr;
using ::testing::Not;

struct Result {
    int exitCode = -1;
    std::string output; ///< standard output and error together
};

/// Runs the built program itself, as a shell would.
Result vantro(const std::string& arguments) {
    const auto command = fmt::format("env -u DISPLAY '{}' {} 2>&1", VANTRO_PROGRAM, arguments);
    FILE* pipe = ::popen(command.c_str(), "r");
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
        project.recordingName = "sample";
        project.metadata.frameRate = 30;
        project.metadata.endTime = 2;
        project.metadata.captureRect = {0, 0, 320, 180};
        project.metadata.cursorPositions = {{100, 50, 0}, {200, 90, 1}};
        project.editableClickEvents = {
            {.x = 200, .y = 90, .timestamp = 1, .startOffset = 0.5, .endOffset = 0.8}};
        save("sample.vantro");
    }

    void save(const std::string& name) {
        saveProject(folder / name, folder / "recording.mov", project);
    }
    std::string path(const std::string& name) const { return "'" + (folder / name).string() + "'"; }
    bool exists(const std::string& name) const { return std::filesystem::exists(folder / name); }

    TemporaryFolder folder;
    ProjectData project;
};

TEST_F(CommandLine, ExportsFramesAndInspectsAProject) {
    const auto exported =
        vantro("export --json " + path("sample.vantro") + " --output " + path("out.mp4"));
    ASSERT_EQ(exported.exitCode, 0) << exported.output;
    EXPECT_THAT(exported.output, HasSubstr(R"("event":"finished")"));
    EXPECT_EQ(probe(folder / "out.mp4")["streams"][0]["nb_read_frames"], "60");

    const auto frame = vantro("frame " + path("sample.vantro") +
                              " --time 1.1 --resolution 720p --output " + path("frame.png"));
    ASSERT_EQ(frame.exitCode, 0) << frame.output;
    EXPECT_EQ(probe(folder / "frame.png")["streams"][0]["width"], 1280);

    const auto inspected = vantro("inspect --json --keyframes 10 " + path("sample.vantro"));
    ASSERT_EQ(inspected.exitCode, 0) << inspected.output;
    const auto document = nlohmann::json::parse(inspected.output);
    EXPECT_NEAR(document["sourceDuration"].get<double>(), 2.0, 0.001);
    EXPECT_EQ(document["canvasWidth"], 320);
    EXPECT_EQ(document["segments"].size(), 1U);
    EXPECT_EQ(document["clickEvents"][0]["timestamp"], 1.0);
    ASSERT_GE(document["keyframes"].size(), 20U);
    const auto& atClick = document["keyframes"][10];
    EXPECT_DOUBLE_EQ(atClick["outputTime"].get<double>(), 1.0);
    EXPECT_DOUBLE_EQ(atClick["scale"].get<double>(), 1.5);
    EXPECT_DOUBLE_EQ(atClick["cursorX"].get<double>(), 200);
    EXPECT_DOUBLE_EQ(document["keyframes"][5]["cursorX"].get<double>(), 150);
}

TEST_F(CommandLine, ExportsAPartAtAnotherRate) {
    const auto command = "export " + path("sample.vantro") + " --output " + path("part.mp4");
    const auto exported = vantro(command + " --range 0.5:1.25 --fps 20");
    ASSERT_EQ(exported.exitCode, 0) << exported.output;
    const auto probed = probe(folder / "part.mp4");
    EXPECT_EQ(probed["streams"][0]["nb_read_frames"], "15");
    EXPECT_EQ(probed["streams"][0]["r_frame_rate"], "20/1");
    const auto beyond = vantro(command + " --force --range 7:");
    EXPECT_EQ(beyond.exitCode, 1);
    EXPECT_THAT(beyond.output, HasSubstr("lasts 2.00 s"));
    for (const auto* wrong : {"--range 3", "--range 2:1", "--range a:b", "--range -1:2", "--fps 0"})
        EXPECT_EQ(vantro(command + " " + wrong).exitCode, 2) << wrong;
}

TEST_F(CommandLine, ExportsSeveralProjectsAndSumsUp) {
    save("second.vantro");
    std::filesystem::create_directory(folder / "out");
    const auto result =
        vantro("export --json " + path("sample.vantro") + " " + path("none.vantro") + " " +
               path("second.vantro") + "/ --output " + path("out"));
    EXPECT_EQ(result.exitCode, 1); // one of them failed
    EXPECT_THAT(result.output, HasSubstr(R"({"event":"summary","exported":2,"failed":1})"));
    EXPECT_THAT(result.output, HasSubstr(R"("event":"failed")"));
    for (const auto* name : {"out/sample.mp4", "out/second.mp4"})
        EXPECT_EQ(probe(folder / name)["streams"][0]["nb_read_frames"], "60") << name;
    EXPECT_EQ(vantro("export a/x.vantro b/x.vantro --output " + path("out")).exitCode, 2);
}

TEST_F(CommandLine, KeepsExistingFilesUnlessForced) {
    std::ofstream(folder / "out.mp4") << "earlier";
    const auto command = "export " + path("sample.vantro") + " --output " + path("out.mp4");
    const auto refused = vantro(command);
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.output, HasSubstr("--force"));
    EXPECT_EQ(std::filesystem::file_size(folder / "out.mp4"), 7U);
    EXPECT_EQ(vantro(command + " --force").exitCode, 0);
    EXPECT_GT(std::filesystem::file_size(folder / "out.mp4"), 7U);
}

TEST_F(CommandLine, AnswersWrongUsageWithTwo) {
    for (const auto* arguments :
         {"dance", "export", "export a.vantro", "export a.vantro --output b.avi",
          "export a.vantro --output b.mp4 --resolution 8k", "inspect a.vantro --keyframes none",
          "frame a.vantro --output b.png", "record --output a.vantro --seconds -3",
          "record --output a.mov"})
        EXPECT_EQ(vantro(arguments).exitCode, 2) << arguments;
    EXPECT_EQ(vantro("--help").exitCode, 0);
    EXPECT_EQ(vantro("export --help").exitCode, 0);
}

TEST_F(CommandLine, SaysOnceWhatIsWrongWithAProject) {
    const struct {
        const char* name;
        std::function<void(ProjectData&)> spoil;
        const char* message;
    } cases[]{
        {"speed", [](auto& p) { p.segments[0].speed = 0; }, "segments[0].speed"},
        {"length", [](auto& p) { p.segments[0].endFraction = 0; }, "segments[0]"},
        {"duration", [](auto& p) { p.metadata.endTime = -1; }, "endTime"},
        {"scale", [](auto& p) { p.metadata.displayScaleFactor = 0; }, "displayScaleFactor"},
    };
    const auto original = project;
    for (const auto& [name, spoil, message] : cases) {
        project = original;
        spoil(project);
        save("bad.vantro");
        const auto result = vantro("inspect " + path("bad.vantro"));
        EXPECT_EQ(result.exitCode, 1) << name;
        EXPECT_THAT(result.output, HasSubstr(message)) << name;
        EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'), 1)
            << name << ": " << result.output;
    }
}

TEST_F(CommandLine, SaysWhatIsWrongWithFilesAndPlaces) {
    const auto fails = [&](const std::string& arguments, const std::string& message) {
        const auto result = vantro(arguments);
        EXPECT_EQ(result.exitCode, 1) << arguments;
        EXPECT_THAT(result.output, HasSubstr(message)) << arguments;
    };
    fails("inspect " + path("none.vantro"), "none.vantro");
    fails("export " + path("sample.vantro") + " --output " + path("no/such/out.mp4"),
          "no such folder");
    fails("frame " + path("sample.vantro") + " --time 99 --output " + path("f.png"),
          "0 to 2.000 s");
    fails("", "display"); // the window needs one as well
    fails("displays", "display");
    fails("record --seconds 1 --output " + path("new.vantro"), "display");
    EXPECT_FALSE(exists("new.vantro"));
    EXPECT_FALSE(exists("f.png"));

    std::filesystem::remove(folder / "sample.vantro" / "recording.mov");
    fails("export " + path("sample.vantro") + " --output " + path("o.mp4"), "recording.mov");
    std::ofstream(folder / "sample.vantro" / "recording.mov") << "noise";
    fails("export " + path("sample.vantro") + " --output " + path("o.mp4"), "recording.mov");
    EXPECT_FALSE(exists("o.mp4"));
}

} // namespace
} // namespace vantro
