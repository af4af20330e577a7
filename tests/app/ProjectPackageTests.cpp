#include "app/files/FileLinking.h"
#include "app/files/ProjectPackage.h"
#include "app/files/RecordingFolder.h"
#include "export/RecordingFixture.h"
#include "model/VantroError.h"

#include <fstream>
#include <regex>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::app {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using vantro::test::TemporaryFolder;

void write(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

std::string read(const fs::path& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

model::Project sampleProject(const fs::path& movie, bool hasWebcam = false) {
    model::RecordingMetadata metadata;
    metadata.endTime = 12.5;
    metadata.captureRect = {0, 0, 1920, 1080};
    metadata.cursorPositions = {{1, 2, 0.016}};
    metadata.hasWebcam = hasWebcam;
    model::Edit edit;
    edit.clickEvents = {{{.x = 10, .y = 20, .timestamp = 3}}};
    return {"vantro_2024-03-05_14-07-09", model::Recording(movie, metadata), edit};
}

template <typename Action>
std::string failureOf(const Action& action) {
    try {
        action();
    } catch (const model::VantroError& error) {
        return error.what();
    }
    return "no error";
}

TEST(ProjectPackage, OpensAsItWasSavedAndLinksTheRecording) {
    const test::TemporaryFolder folder;
    write(folder / "recording.mov", "movie");
    write(folder / "webcam.mov", "webcam");
    const auto project = sampleProject(folder / "recording.mov", true);
    const auto first = files::saveProject(folder / "a.vantro", project);
    const auto second = files::saveProject(folder / "b.vantro", first);

    EXPECT_EQ(first.recording.movie(), folder / "a.vantro" / "recording.mov");
    EXPECT_EQ(files::readProjectFile(folder / "a.vantro"), first);
    EXPECT_EQ(files::readProjectFile(folder / "b.vantro"), second);
    EXPECT_TRUE(fs::equivalent(folder / "recording.mov", folder / "b.vantro" / "recording.mov"));
    fs::remove_all(folder / "a.vantro");
    EXPECT_EQ(read(folder / "b.vantro" / "recording.mov"), "movie");
    EXPECT_EQ(read(folder / "b.vantro" / "webcam.mov"), "webcam");
}

TEST(ProjectPackage, CarriesACustomBackgroundWhereverItIsMoved) {
    const test::TemporaryFolder folder;
    write(folder / "recording.mov", "movie");
    write(folder / "my beach.png", "picture");
    auto project = sampleProject(folder / "recording.mov");
    project.edit.background.type = model::BackgroundImageSource::custom(folder / "my beach.png");
    files::saveProject(folder / "a.vantro", project);
    fs::remove(folder / "my beach.png");
    fs::rename(folder / "a.vantro", folder / "moved.vantro");

    const auto opened = files::readProjectFile(folder / "moved.vantro");
    const auto& image = std::get<model::BackgroundImageSource>(opened.edit.background.type);
    EXPECT_EQ(image.url, folder / "moved.vantro" / "my beach.png");
    EXPECT_EQ(read(image.url), "picture");
    files::saveProject(folder / "moved.vantro", opened);
    EXPECT_EQ(read(image.url), "picture"); // saving in place keeps the copy it was opened with
}

TEST(ProjectPackage, CopiesAcrossFileSystems) {
    const fs::path memory = "/dev/shm";
    const test::TemporaryFolder folder;
    write(folder / "recording.mov", "movie");
    const auto target = memory / ("vantro-link-" + model::Uuid::random().toString());
    write(target, "an earlier and longer file");
    files::linkOrCopy(folder / "recording.mov", target);
    EXPECT_EQ(read(target), "movie");
    fs::remove(target);
    EXPECT_THROW(files::linkOrCopy(folder / "missing.mov", folder / "x.mov"), fs::filesystem_error);
}

TEST(ProjectPackage, TellsWhatIsWrongWithWhatItOpens) {
    const test::TemporaryFolder folder;
    EXPECT_THAT(failureOf([&] { files::readProjectFile(folder / "none.vantro"); }),
                HasSubstr("none.vantro: no such project"));
    write(folder / "file.vantro", "");
    EXPECT_THAT(failureOf([&] { files::readProjectFile(folder / "file.vantro"); }),
                HasSubstr("not a project folder"));
    fs::create_directory(folder / "empty.vantro");
    EXPECT_THAT(failureOf([&] { files::readProjectFile(folder / "empty.vantro"); }),
                HasSubstr("project.json"));

    write(folder / "recording.mov", "movie");
    files::saveProject(folder / "a.vantro", sampleProject(folder / "recording.mov"));
    const auto document = folder / "a.vantro" / "project.json";
    write(document, std::regex_replace(read(document), std::regex("\"webcamSize\": [0-9.]+"),
                                       "\"webcamSize\": \"large\""));
    EXPECT_THAT(failureOf([&] { files::readProjectFile(folder / "a.vantro"); }),
                HasSubstr("webcamSize"));
}

TEST(ProjectPackage, AppearsWholeAndReplacesOnlyPackages) {
    const test::TemporaryFolder folder;
    write(folder / "recording.mov", "movie");
    auto project = sampleProject(folder / "recording.mov");
    files::saveNewProject(folder / "a.vantro", project, false);

    project.name = "second";
    EXPECT_THAT(failureOf([&] { files::saveNewProject(folder / "a.vantro", project, false); }),
                HasSubstr("use --force"));
    EXPECT_NE(files::readProjectFile(folder / "a.vantro").name, "second");
    files::saveNewProject(folder / "a.vantro", project, true);
    EXPECT_EQ(files::readProjectFile(folder / "a.vantro").name, "second");

    fs::create_directory(folder / "photos.vantro");
    write(folder / "photos.vantro" / "holiday.jpg", "precious");
    EXPECT_THAT(failureOf([&] { files::saveNewProject(folder / "photos.vantro", project, true); }),
                HasSubstr("is not a project"));
    EXPECT_EQ(read(folder / "photos.vantro" / "holiday.jpg"), "precious");

    EXPECT_NE(failureOf([&] {
                  files::saveNewProject(folder / "b.vantro", sampleProject(folder / "missing.mov"),
                                        false);
              }),
              "no error");
    EXPECT_FALSE(fs::exists(folder / "b.vantro"));
    for (const auto& entry : fs::directory_iterator(folder.path()))
        EXPECT_NE(entry.path().filename().string().front(), '.') << entry.path();
}

TEST(RecordingFolder, IsFreshAndNamedByTheDate) {
    EXPECT_TRUE(std::regex_match(files::defaultRecordingName(),
                                 std::regex(R"(vantro_\d{4}-\d\d-\d\d_\d\d-\d\d-\d\d)")));
    const auto first = files::makeRecordingDirectory();
    const auto second = files::makeRecordingDirectory();
    EXPECT_NE(first, second);
    EXPECT_TRUE(fs::is_empty(first));
    EXPECT_EQ(first.parent_path().filename(), "Vantro");
    fs::remove(first);
    fs::remove(second);
}

} // namespace
} // namespace vantro::app
