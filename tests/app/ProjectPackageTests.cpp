#include "app/FileLinking.h"
#include "app/ProjectPackage.h"
#include "app/RecordingFolder.h"
#include "export/RecordingFixture.h"
#include "model/VantroError.h"

#include <fstream>
#include <regex>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using vantro::testing::TemporaryFolder;

void write(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

std::string read(const fs::path& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

ProjectData sampleProject() {
    ProjectData project;
    project.recordingName = "vantro_2024-03-05_14-07-09";
    project.metadata.endTime = 12.5;
    project.metadata.captureRect = {0, 0, 1920, 1080};
    project.metadata.cursorPositions = {{1, 2, 0.016}};
    project.editableClickEvents = {{.x = 10, .y = 20, .timestamp = 3}};
    return project;
}

template <typename Action>
std::string failureOf(const Action& action) {
    try {
        action();
    } catch (const VantroError& error) {
        return error.what();
    }
    return "no error";
}

TEST(ProjectPackage, OpensAsItWasSavedAndLinksTheRecording) {
    const TemporaryFolder folder;
    write(folder / "recording.mov", "movie");
    write(folder / "webcam.mov", "webcam");
    auto project = sampleProject();
    project.metadata.hasWebcam = true;
    saveProject(folder / "a.vantro", folder / "recording.mov", project);
    saveProject(folder / "b.vantro", folder / "a.vantro" / "recording.mov", project);

    EXPECT_EQ(readProjectFile(folder / "a.vantro"), project);
    EXPECT_EQ(readProjectFile(folder / "b.vantro"), project);
    EXPECT_TRUE(fs::equivalent(folder / "recording.mov", folder / "b.vantro" / "recording.mov"));
    fs::remove_all(folder / "a.vantro");
    EXPECT_EQ(read(folder / "b.vantro" / "recording.mov"), "movie");
    EXPECT_EQ(read(folder / "b.vantro" / "webcam.mov"), "webcam");
}

TEST(ProjectPackage, CarriesACustomBackgroundWhereverItIsMoved) {
    const TemporaryFolder folder;
    write(folder / "recording.mov", "movie");
    write(folder / "my beach.png", "picture");
    auto project = sampleProject();
    project.backgroundSettings.type = BackgroundImageSource::custom(folder / "my beach.png");
    saveProject(folder / "a.vantro", folder / "recording.mov", project);
    fs::remove(folder / "my beach.png");
    fs::rename(folder / "a.vantro", folder / "moved.vantro");

    const auto opened = readProjectFile(folder / "moved.vantro");
    const auto& image = std::get<BackgroundImageSource>(opened.backgroundSettings.type);
    EXPECT_EQ(image.url, folder / "moved.vantro" / "my beach.png");
    EXPECT_EQ(read(image.url), "picture");
    saveProject(folder / "moved.vantro", folder / "moved.vantro" / "recording.mov", opened);
    EXPECT_EQ(read(image.url), "picture"); // saving in place keeps the copy it was opened with
}

TEST(ProjectPackage, CopiesAcrossFileSystems) {
    const fs::path memory = "/dev/shm";
    const TemporaryFolder folder;
    write(folder / "recording.mov", "movie");
    const auto target = memory / ("vantro-link-" + Uuid::random().toString());
    write(target, "an earlier and longer file");
    linkOrCopy(folder / "recording.mov", target);
    EXPECT_EQ(read(target), "movie");
    fs::remove(target);
    EXPECT_THROW(linkOrCopy(folder / "missing.mov", folder / "x.mov"), fs::filesystem_error);
}

TEST(ProjectPackage, TellsWhatIsWrongWithWhatItOpens) {
    const TemporaryFolder folder;
    EXPECT_THAT(failureOf([&] { readProjectFile(folder / "none.vantro"); }),
                HasSubstr("none.vantro: no such project"));
    write(folder / "file.vantro", "");
    EXPECT_THAT(failureOf([&] { readProjectFile(folder / "file.vantro"); }),
                HasSubstr("not a project folder"));
    fs::create_directory(folder / "empty.vantro");
    EXPECT_THAT(failureOf([&] { readProjectFile(folder / "empty.vantro"); }),
                HasSubstr("project.json"));

    write(folder / "recording.mov", "movie");
    saveProject(folder / "a.vantro", folder / "recording.mov", sampleProject());
    const auto document = folder / "a.vantro" / "project.json";
    write(document, std::regex_replace(read(document), std::regex("\"webcamSize\": [0-9.]+"),
                                       "\"webcamSize\": \"large\""));
    EXPECT_THAT(failureOf([&] { readProjectFile(folder / "a.vantro"); }), HasSubstr("webcamSize"));
}

TEST(ProjectPackage, AppearsWholeAndReplacesOnlyPackages) {
    const TemporaryFolder folder;
    write(folder / "recording.mov", "movie");
    auto project = sampleProject();
    saveNewProject(folder / "a.vantro", folder / "recording.mov", project, false);

    project.recordingName = "second";
    EXPECT_THAT(failureOf([&] {
                    saveNewProject(folder / "a.vantro", folder / "recording.mov", project, false);
                }),
                HasSubstr("use --force"));
    EXPECT_NE(readProjectFile(folder / "a.vantro").recordingName, "second");
    saveNewProject(folder / "a.vantro", folder / "recording.mov", project, true);
    EXPECT_EQ(readProjectFile(folder / "a.vantro").recordingName, "second");

    fs::create_directory(folder / "photos.vantro");
    write(folder / "photos.vantro" / "holiday.jpg", "precious");
    EXPECT_THAT(failureOf([&] {
                    saveNewProject(folder / "photos.vantro", folder / "recording.mov", project,
                                   true);
                }),
                HasSubstr("is not a project"));
    EXPECT_EQ(read(folder / "photos.vantro" / "holiday.jpg"), "precious");

    EXPECT_NE(failureOf([&] {
                  saveNewProject(folder / "b.vantro", folder / "missing.mov", project, false);
              }),
              "no error");
    EXPECT_FALSE(fs::exists(folder / "b.vantro"));
    for (const auto& entry : fs::directory_iterator(folder.path()))
        EXPECT_NE(entry.path().filename().string().front(), '.') << entry.path();
}

TEST(RecordingFolder, IsFreshAndNamedByTheDate) {
    EXPECT_TRUE(std::regex_match(defaultRecordingName(),
                                 std::regex(R"(vantro_\d{4}-\d\d-\d\d_\d\d-\d\d-\d\d)")));
    const auto first = makeRecordingDirectory();
    const auto second = makeRecordingDirectory();
    EXPECT_NE(first, second);
    EXPECT_TRUE(fs::is_empty(first));
    EXPECT_EQ(first.parent_path().filename(), "Vantro");
    fs::remove(first);
    fs::remove(second);
}

} // namespace
} // namespace vantro
