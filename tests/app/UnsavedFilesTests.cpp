// What nobody saved: recordings, movies from elsewhere, and edits that a crash interrupted.
#include "app/files/EditJournal.h"
#include "app/files/ImportMovie.h"
#include "app/files/ProjectStores.h"
#include "app/files/RecordingFolder.h"
#include "app/files/UnsavedRecordings.h"
#include "base/Journal.h"
#include "export/RecordingFixture.h"
#include "media/MovieRecovery.h"
#include "model/VantroError.h"
#include "support/Environment.h"
#include "support/Ffmpeg.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace vantro::app {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

/// Recordings' folders and journals below a folder of the test's.
class UnsavedFiles : public testing::Test {
  protected:
    UnsavedFiles() { variables.set("TMPDIR", folder.path()); }

    fs::path recorded(const std::string& content = "movie") const {
        const auto movie = files::makeRecordingDirectory() / "recording.mov";
        std::ofstream(movie) << content;
        return movie;
    }
    static std::vector<fs::path> listed() {
        std::vector<fs::path> movies;
        for (const auto& recording : files::unsavedRecordings())
            movies.push_back(recording.movie);
        return movies;
    }

    test::TemporaryFolder folder;
    test::Environment variables;
};

TEST_F(UnsavedFiles, RecordingsAreListedUntilAProjectHoldsThemAndWhenThatIsGone) {
    const auto movie = recorded();
    EXPECT_EQ(listed(), std::vector{movie});
    const auto package = folder / "film.vantro";
    files::saveProject(package, {"film", {movie, model::RecordingMetadata{}}, {}}, false);
    EXPECT_EQ(listed(), std::vector<fs::path>{});
    fs::rename(package, folder / "moved.vantro");
    EXPECT_EQ(listed(), std::vector<fs::path>{}) << "its movie is still linked";
    fs::create_hard_link(movie, folder / "backup.mov");
    EXPECT_EQ(listed(), std::vector<fs::path>{});
    fs::remove_all(folder / "moved.vantro");
    fs::remove(folder / "backup.mov");
    EXPECT_EQ(listed(), std::vector{movie});
    fs::create_hard_link(movie, folder / "backup.mov");
    fs::remove(movie.parent_path() / "saved");
    EXPECT_EQ(listed(), std::vector{movie}) << "a link that no project made";
}

TEST_F(UnsavedFiles, WhatIsRecordedOrOpenIsNeitherListedNorDeleted) {
    const auto movie = recorded();
    {
        const base::JournalWriter recording(media::movieJournalPath(movie));
        EXPECT_EQ(listed(), std::vector<fs::path>{});
    }
    ASSERT_EQ(listed().size(), 1U);
    EXPECT_TRUE(files::unsavedRecordings().front().isInterrupted);
    auto open = files::ProjectLock::take(movie.parent_path());
    EXPECT_EQ(listed(), std::vector<fs::path>{});
    EXPECT_THROW(files::deleteRecording(movie), std::runtime_error);
    EXPECT_TRUE(fs::exists(movie));
    open->reset();
    files::deleteRecording(movie);
    EXPECT_FALSE(fs::exists(movie.parent_path()));
}

TEST_F(UnsavedFiles, TheNewestRecordingComesFirstWithItsNameAndSize) {
    const auto older = recorded("12345");
    variables.set("TZ", "UTC");
    ::tzset();
    const timespec then[2]{{.tv_sec = 1'709'647'627, .tv_nsec = 0},
                           {.tv_sec = 1'709'647'627, .tv_nsec = 0}};
    ::utimensat(AT_FDCWD, older.c_str(), then, 0);
    files::nameRecording(recorded(), "Tour");
    const auto found = files::unsavedRecordings();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].name, "Tour");
    EXPECT_EQ(found[1].name, "vantro_2024-03-05_14-07-07");
    EXPECT_EQ(found[1].bytes, 5U);
    const auto damaged = files::recordingDetails(older);
    EXPECT_FALSE(damaged.seconds || damaged.picture);
}

struct Container {
    const char* extension;
    const char* codecs;
    bool hasSound;
};

class ImportedMovie : public UnsavedFiles, public testing::WithParamInterface<Container> {};

TEST_P(ImportedMovie, BecomesAProjectWithoutClicksAndStaysAsItIs) {
    const auto& [extension, codecs, hasSound] = GetParam();
    const auto movie = folder / ("My trip." + std::string(extension));
    test::runFfmpeg(fmt::format("-f lavfi -i color=red:s=320x180:r=25:d=2 {} {}",
                                hasSound ? "-f lavfi -i sine=d=2" : "", codecs),
                    movie);
    const auto before = test::contentOf(movie);
    EXPECT_TRUE(files::hasMovieName(movie));
    const auto project = files::importMovie(movie);
    EXPECT_EQ(project.name, "My trip");
    EXPECT_TRUE(project.edit.clickEvents.empty());
    const auto& metadata = project.recording.metadata();
    EXPECT_EQ(metadata.captureRect, (model::Rect{0, 0, 320, 180}));
    EXPECT_EQ(metadata.frameRate, 25);
    EXPECT_NEAR(metadata.endTime, 2, 0.1);
    EXPECT_EQ(metadata.hasSystemAudio, hasSound);
    ASSERT_EQ(files::unsavedRecordings().size(), 1U);
    EXPECT_EQ(files::unsavedRecordings().front().name, "My trip");

    files::saveProject(folder / "trip.vantro", project, false);
    fs::rename(movie, folder / "elsewhere");
    auto opened = files::readProjectFile(folder / "trip.vantro");
    opened.edit = test::plainProject({}, 25).edit;
    auto film = test::film(opened);
    const auto picture = film.still(1, {320, 180});
    EXPECT_LT(test::distance(test::meanColor(*picture, 160, 90), {254, 0, 0}), 8);
    EXPECT_EQ(test::contentOf(folder / "elsewhere"), before);
}

INSTANTIATE_TEST_SUITE_P(
    Containers, ImportedMovie,
    testing::Values(Container{"mp4", "-c:v libx264 -pix_fmt yuv420p -c:a aac -shortest", true},
                    Container{"MOV", "-c:v libx264 -pix_fmt yuv420p", false},
                    Container{"mkv", "-c:v libx264 -pix_fmt yuv420p -c:a libopus", true},
                    Container{"webm", "-c:v libvpx -c:a libopus", true}),
    [](const auto& movie) { return movie.param.extension; });

TEST_F(UnsavedFiles, AMovieThatCannotBeImportedIsRefusedWithItsReasonAndLeavesNothing) {
    test::runFfmpeg("-f lavfi -i sine=d=1 -c:a aac", folder / "sound.mp4");
    folder.write("text.webm", "no movie");
    for (const auto& [name, told] : {std::pair{"sound.mp4", "holds no pictures"},
                                     {"text.webm", "text.webm"},
                                     {"gone.mkv", "no such file"}}) {
        try {
            files::importMovie(folder / name);
            ADD_FAILURE() << name;
        } catch (const model::VantroError& error) {
            EXPECT_EQ(error.kind(), model::VantroError::Kind::projectOpenFailed);
            EXPECT_THAT(error.message(), HasSubstr(told));
        }
    }
    EXPECT_TRUE(files::recordingFolders().empty());
}

class EditJournal : public testing::Test {
  protected:
    files::JournalledEdit sampleEdit() const {
        model::RecordingMetadata metadata;
        metadata.endTime = 12.5;
        metadata.cursorPositions.resize(1000);
        files::JournalledEdit made{
            .project = {"tour \"1\"", {"/r/\xff\xfe/recording.mov", metadata}, {}},
            .package = folder / "a\nb.vantro"};
        made.project.edit.cursorScale = 1.25;
        std::vector<model::ClickEvent> clicks(2000);
        for (auto& click : clicks)
            click.x = 1.0 / 3;
        made.project.edit.clickEvents = std::move(clicks);
        made.project.edit.background.type = model::BackgroundImageSource::custom("/p/my beach.png");
        return made;
    }

    test::TemporaryFolder folder;
    const fs::path directory = folder / "edits";
    const files::JournalledEdit edit = sampleEdit();
};

TEST_F(EditJournal, KeepsTheEditAndWhereItsFilesLieButNoSamples) {
    const auto journal = files::EditJournal::begin(directory);
    EXPECT_TRUE(files::EditJournal::leftBehind(directory).empty()) << "it is in use";
    journal->write({edit.project, {}});
    journal->write(edit);
    const auto read = journal->read();
    EXPECT_EQ(read.project.name, edit.project.name);
    EXPECT_EQ(read.project.recording.movie(), edit.project.recording.movie());
    EXPECT_EQ(read.project.recording.metadata(),
              files::outlineOf(edit.project.recording.metadata()));
    EXPECT_EQ(read.project.edit, edit.project.edit);
    EXPECT_EQ(read.package, edit.package);
}

TEST_F(EditJournal, ThatBreaksOffIsRefused) {
    auto journal = files::EditJournal::begin(directory);
    journal->write(edit);
    const auto file = fs::directory_iterator(directory)->path() / "edit";
    const auto whole = test::contentOf(file);
    for (const std::size_t length : {0UL, 5UL, 30UL, whole.size() / 2, whole.size() - 3}) {
        std::ofstream(file, std::ios::binary) << whole.substr(0, length);
        EXPECT_THROW(journal->read(), std::runtime_error) << length;
    }
}

} // namespace
} // namespace vantro::app
