#include "app/files/FileLinking.h"
#include "app/files/FileNames.h"
#include "app/files/ProjectStores.h"
#include "app/files/RecordingFolder.h"
#include "model/VantroError.h"
#include "support/Environment.h"
#include "support/TemporaryFolder.h"

#include <regex>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vantro::app {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using vantro::test::TemporaryFolder;

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

/// A folder with a recording, and packages made of it.
class ProjectPackage : public ::testing::Test {
  protected:
    ProjectPackage() {
        folder.write("recording.mov", "movie");
        folder.write("webcam.mov", "webcam");
    }
    model::Project save(const std::string& name, const model::Project& edited) const {
        return files::saveProject(folder / name, edited, true);
    }
    std::string content(const fs::path& name) const {
        return test::contentOf(folder.path() / name);
    }

    test::TemporaryFolder folder;
    model::Project project = sampleProject(folder / "recording.mov");
};

TEST_F(ProjectPackage, OpensAsItWasSavedAndLinksTheRecording) {
    const auto first = save("a.vantro", sampleProject(folder / "recording.mov", true));
    const auto second = save("b.vantro", first);
    EXPECT_EQ(first.recording.movie(), folder / "a.vantro" / "recording.mov");
    EXPECT_EQ(files::readProjectFile(folder / "a.vantro"), first);
    EXPECT_EQ(files::readProjectFile(folder / "b.vantro"), second);
    EXPECT_TRUE(fs::equivalent(folder / "recording.mov", second.recording.movie()));
    fs::remove_all(folder / "a.vantro");
    EXPECT_EQ(content("b.vantro/recording.mov"), "movie");
    EXPECT_EQ(content("b.vantro/webcam.mov"), "webcam");
}

TEST_F(ProjectPackage, SavedOntoItselfChangesItsEditAloneAndKeepsOtherFiles) {
    auto saved = save("a.vantro", project);
    folder.write("a.vantro/notes/today.txt", "precious");
    const auto inode = [&] {
        struct stat status{};
        ::stat((folder / "a.vantro").c_str(), &status);
        return status.st_ino;
    };
    const auto before = inode();
    saved.edit.cursorScale = 1;
    save("a.vantro", saved);
    EXPECT_EQ(inode(), before);
    EXPECT_TRUE(fs::equivalent(folder / "recording.mov", saved.recording.movie()));
    EXPECT_EQ(files::readProjectFile(folder / "a.vantro"), saved);

    folder.write("other/recording.mov", "other movie");
    const auto other = save("a.vantro", sampleProject(folder / "other/recording.mov"));
    EXPECT_EQ(content("a.vantro/recording.mov"), "other movie");
    EXPECT_EQ(content("a.vantro/notes/today.txt"), "precious");
    EXPECT_EQ(files::readProjectFile(folder / "a.vantro"), other);
}

TEST_F(ProjectPackage, CarriesACustomBackgroundWhereverItIsMoved) {
    const auto withPicture = [&](const std::string& name) {
        auto made = project;
        made.edit.background.type = model::BackgroundImageSource::custom(folder / name);
        return made;
    };
    const auto pictureOf = [&](const std::string& name) {
        const auto opened = files::readProjectFile(folder / name);
        return std::get<model::BackgroundImageSource>(opened.edit.background.type).path;
    };
    folder.write("my beach.png", "picture");
    save("a.vantro", withPicture("my beach.png"));
    fs::remove(folder / "my beach.png");
    fs::rename(folder / "a.vantro", folder / "moved.vantro");
    EXPECT_EQ(pictureOf("moved.vantro"), folder / "moved.vantro" / "my beach.png");
    EXPECT_EQ(test::contentOf(pictureOf("moved.vantro")), "picture");

    // Another picture of that name: until "project.json" changes, the first must stay.
    folder.write("elsewhere/my beach.png", "another");
    auto opened = files::readProjectFile(folder / "moved.vantro");
    opened.edit = withPicture("elsewhere/my beach.png").edit;
    save("moved.vantro", opened);
    EXPECT_EQ(pictureOf("moved.vantro").filename(), "my beach-2.png");
    EXPECT_EQ(test::contentOf(pictureOf("moved.vantro")), "another");
    EXPECT_EQ(content("moved.vantro/my beach.png"), "picture");
}

TEST_F(ProjectPackage, LinksWhatALinkPointsToAndCopiesAcrossFileSystems) {
    fs::create_symlink("recording.mov", folder / "link.mov");
    files::linkOrCopy(folder / "link.mov", folder / "linked.mov");
    fs::remove(folder / "link.mov");
    fs::rename(folder / "recording.mov", folder / "renamed.mov");
    EXPECT_EQ(content("linked.mov"), "movie");

    const auto target = "/dev/shm/vantro-link-" + model::Uuid::random().toString();
    std::ofstream(target) << "an earlier and longer file";
    files::linkOrCopy(folder / "renamed.mov", target);
    EXPECT_EQ(test::contentOf(target), "movie");
    fs::remove(target);
    EXPECT_THROW(files::linkOrCopy(folder / "missing.mov", folder / "x.mov"), fs::filesystem_error);
}

TEST_F(ProjectPackage, AppearsWholeAndReplacesOnlyPackages) {
    save("a.vantro", project);
    folder.write("photos.vantro/holiday.jpg", "precious");
    const struct {
        const char* name;
        const char* movie;
        bool replace;
        const char* error;
    } refused[]{
        {"a.vantro", "recording.mov", false, "use --force"},
        {"photos.vantro", "recording.mov", true, "is not a project"},
        {"a.mov", "recording.mov", true, "ends in .vantro"},
        {"no/b.vantro", "recording.mov", true, "no such folder"},
        {"b.vantro", "missing.mov", true, "missing.mov"},
    };
    const auto names = folder.names();
    for (const auto& [name, movie, replace, error] : refused)
        EXPECT_THAT(failureOf([&, name = name, movie = movie, replace = replace] {
                        files::saveProject(folder / name, sampleProject(folder / movie), replace);
                    }),
                    HasSubstr(error));
    EXPECT_EQ(folder.names(), names) << "nothing half-made";
    EXPECT_EQ(content("photos.vantro/holiday.jpg"), "precious");
    EXPECT_EQ(files::readProjectFile(folder / "a.vantro").edit, project.edit);
}

TEST(FileNames, AreNeitherPathsNorHiddenNorEndless) {
    for (const auto& [name, safe] : {std::pair{"a/b\\c\n", "a-b-c-"},
                                     {"../../etc", "-..-etc"},
                                     {" .hidden. ", "hidden"},
                                     {"", "Untitled"},
                                     {"...", "Untitled"},
                                     {"Ünïcode 12", "Ünïcode 12"}})
        EXPECT_EQ(files::safeFileName(name), safe);
    std::string umlauts = "x";
    for (int i = 0; i < 300; ++i)
        umlauts += "ü";
    EXPECT_EQ(files::safeFileName(umlauts).size(), 199U) << "whole characters";
}

/// Recordings' folders below a folder of the test's.
class RecordingFolder : public ::testing::Test {
  protected:
    test::TemporaryFolder folder;
    test::Environment variables;
};

TEST_F(RecordingFolder, LiesWhereItIsPrivateAndLasts) {
    EXPECT_TRUE(std::regex_match(files::defaultRecordingName(),
                                 std::regex(R"(vantro_\d{4}-\d\d-\d\d_\d\d-\d\d-\d\d)")));
    const auto madeBelow = [&](const fs::path& place) {
        const auto made = files::makeRecordingDirectory();
        EXPECT_EQ(made.parent_path(), place);
        EXPECT_EQ(files::recordingsDirectory(), place);
        EXPECT_EQ(fs::status(place).permissions(), fs::perms::owner_all);
        EXPECT_EQ(fs::status(made).permissions(), fs::perms::owner_all);
        EXPECT_NE(files::makeRecordingDirectory(), made);
        EXPECT_EQ(files::recordingFolders().size(), 2U);
    };
    fs::create_directories(folder / "tmp/Vantro"); // readable by all, as it was made once
    variables.set("TMPDIR", folder / "tmp");
    madeBelow(folder / "tmp/Vantro");
    variables.set("TMPDIR", "");
    variables.set("HOME", folder / "home");
    variables.set("XDG_DATA_HOME", "");
    madeBelow(folder / "home/.local/share/vantro/Recordings");
    variables.set("XDG_DATA_HOME", folder / "data");
    madeBelow(folder / "data/vantro/Recordings");
    const auto fallback = "/var/tmp/vantro-" + std::to_string(::geteuid()) + "/Recordings";
    variables.set("XDG_DATA_HOME",
                  folder.write("file", "") / "data"); // no folder can be made there
    EXPECT_EQ(files::recordingsDirectory(), fallback);
}

TEST_F(RecordingFolder, IsNeverSomebodyElses) {
    constexpr uid_t nobody = 65534;
    const auto taken = folder / "Vantro";
    fs::create_directory(taken);
    if (::chown(taken.c_str(), nobody, nobody) != 0)
        GTEST_SKIP() << "only root can give a folder away";
    variables.set("TMPDIR", folder.path());
    EXPECT_EQ(files::makeRecordingDirectory().parent_path(),
              folder / ("Vantro-" + std::to_string(::geteuid())));
    EXPECT_TRUE(fs::is_empty(taken));
}

TEST_F(RecordingFolder, MayBeOneOfTheUsersWhereRecordingsAreStillFound) {
    variables.set("TMPDIR", folder.path());
    const auto chosen = folder / "films";
    EXPECT_THAT(files::recordingsFolderProblem(chosen), testing::HasSubstr("films: No such file"));
    EXPECT_THAT(files::recordingsFolderProblem(folder.write("file", "")),
                testing::HasSubstr("file: Not a directory"));
    fs::create_directory(chosen);
    EXPECT_EQ(files::recordingsFolderProblem(chosen), "");
    const auto made = files::makeRecordingDirectory(chosen);
    EXPECT_EQ(made.parent_path(), chosen);
    EXPECT_EQ(fs::status(made).permissions(), fs::perms::owner_all);
    EXPECT_THAT(files::recordingFolders(), testing::ElementsAre(made));
    fs::rename(chosen, folder / "away"); // as a disk that is unplugged
    EXPECT_TRUE(files::recordingFolders().empty());
    fs::rename(folder / "away", chosen);
    files::deleteRecording(made / "recording.mov");
    EXPECT_FALSE(fs::exists(made));
    EXPECT_TRUE(fs::is_empty(files::recordingsDirectory())) << "no link is left";
}

TEST_F(RecordingFolder, DeletesRecordingsAndNothingElse) {
    variables.set("TMPDIR", folder.path());
    const auto made = files::makeRecordingDirectory();
    std::ofstream(made / "recording.mov") << "movie";
    std::ofstream(made / "metadata.json") << "{}";
    folder.write("film.vantro/recording.mov", "movie");
    EXPECT_EQ(files::recordingSize(made / "recording.mov"), 7U);
    files::deleteRecording(made / "recording.mov");
    files::deleteRecording(folder / "film.vantro/recording.mov");
    EXPECT_FALSE(fs::exists(made));
    EXPECT_TRUE(fs::exists(folder / "film.vantro/recording.mov"));
}

} // namespace
} // namespace vantro::app
