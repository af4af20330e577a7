// Recordings by the program itself on disks that fail: at every single call that changes a file.
#include "app/FailingCalls.h"
#include "media/Asset.h"
#include "support/TestWindow.h"

namespace vantro::app {
namespace {

using namespace vantro::test;

class FailingRecording : public ::testing::Test {
  protected:
    /// What is left of recordings in the temporary folder.
    std::vector<std::filesystem::path> movies() const {
        std::vector<std::filesystem::path> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(work))
            if (entry.path().filename() == "recording.mov")
                found.push_back(entry.path());
        return found;
    }

    /// Whether there was anything to recover; if so it is a movie now.
    bool isRecovered(const std::filesystem::path& movie) const {
        const auto made = folder / "recovered.vantro";
        const auto result = vantro(fmt::format("recover '{}' --force --output '{}'",
                                               movie.parent_path().string(), made.string()),
                                   environment);
        if (result.exitCode != 0) {
            EXPECT_THAT(result.output, ::testing::HasSubstr("No picture was recorded"));
            return false;
        }
        EXPECT_GT(media::Asset::open(made / "recording.mov").duration().seconds(), 0);
        return true;
    }

    const XServer server;
    TemporaryFolder folder;
    std::filesystem::path work = folder / "work";
    std::string environment =
        fmt::format("DISPLAY={} TMPDIR='{}'", server.display(), work.string());
};

/// The error that the user is told. A folder that cannot be made is noticed when the movie in it
/// cannot be opened.
int toldError(const FailedRun& run, const Manner& manner) {
    const bool isMissingFolder = run.what.starts_with("mkdir") && manner.text.starts_with("once") &&
                                 !run.what.contains(".vantro");
    return isMissingFolder ? ENOENT : manner.error;
}

/// A journal is given up, and the recording goes on without, unless it cannot even be made. The
/// note that a project holds the recording is written when it does.
bool mayGoOn(const FailedRun& run, const Manner& manner) {
    if (run.what.contains("/.saved."))
        return true;
    const bool isJournal = run.what.ends_with(".journal") || run.what.ends_with(".cursor");
    return isJournal && !run.what.starts_with("open") && manner.text.starts_with("once");
}

TEST_F(FailingRecording, keepsTheMovieAndTheEarlierProjectWhicheverCallFails) {
    const TestWindow window(server, {0, 0, 640, 480}, 0xd02010);
    const auto package = work / "film.vantro";
    const auto prepare = [&] {
        std::filesystem::remove_all(work);
        folder.write("work/film.vantro/project.json", "earlier");
    };
    for (const auto& manner : {Manner::onwards(ENOSPC), Manner::once(EIO)}) {
        int wholeMovies = 0;
        int recovered = 0;
        forEveryCall(
            manner, work, environment,
            "record --no-system-audio --force --seconds 0.1 --output '" + package.string() + "'",
            prepare, [&](const FailedRun& run) {
                const auto kept = movies();
                if (mayGoOn(run, manner)) {
                    EXPECT_EQ(run.result.exitCode, 0);
                    EXPECT_TRUE(std::filesystem::exists(package / "recording.mov"));
                    return;
                }
                expectClearError(run, kept.empty() ? work : kept.front().parent_path(),
                                 toldError(run, manner));
                EXPECT_EQ(std::filesystem::file_size(package / "project.json"), 7U);
                EXPECT_LE(kept.size(), 1U);
                const std::filesystem::directory_iterator left(work);
                EXPECT_LE(std::distance(left, {}), 2); // beside the project: recordings
                if (kept.empty())
                    return;
                if (std::filesystem::exists(kept.front().parent_path() / "metadata.json")) {
                    EXPECT_GT(media::Asset::open(kept.front()).duration().seconds(), 0.05);
                    ++wholeMovies;
                } else {
                    recovered += isRecovered(kept.front());
                }
            });
        EXPECT_GE(recovered, 2);   // a picture, a second one or the index could not be written
        EXPECT_GE(wholeMovies, 5); // the package is made, linked, written, synced and put in place
    }
}

} // namespace
} // namespace vantro::app
