// Projects replaced by the program itself while it is killed, at every single call that changes a
// file.
#include "app/FailingCalls.h"
#include "app/files/FinishRecording.h"

namespace vantro::app {
namespace {

namespace fs = std::filesystem;
using namespace vantro::test;

TEST(KilledSaving, leavesTheEarlierProjectOrTheNewOneAndAllOtherFiles) {
    TemporaryFolder folder;
    const auto package = folder / "out/film.vantro";
    fs::create_directory(folder / "earlier");
    fs::create_directory(folder / "new");
    writeColorClock(folder / "earlier/recording.mov", 64, 64, 30, 1);
    writeColorClock(folder / "new/recording.mov", 64, 64, 30, 2);
    model::RecordingMetadata metadata;
    metadata.endTime = 2;
    files::finishRecording(folder / "new/recording.mov", metadata);
    metadata.endTime = 1;
    const model::Project earlier{
        "earlier", model::Recording(folder / "earlier/recording.mov", metadata), {}};
    int replaced = 0;
    const auto prepare = [&] {
        fs::remove_all(folder / "out");
        fs::create_directory(folder / "out");
        files::saveProject(package, earlier, false);
        folder.write("out/film.vantro/notes.txt", "precious");
    };
    const int calls = forEveryCall(
        Manner::kill(), folder / "out", "-u DISPLAY",
        fmt::format("recover '{}' --force --output '{}'", (folder / "new").string(),
                    package.string()),
        prepare, [&](const FailedRun& run) {
            EXPECT_NE(run.result.exitCode, 0);
            const auto found = files::readProjectFile(package);
            const bool isNew = found.name == "film";
            replaced += isNew;
            EXPECT_EQ(found.recording.metadata().endTime, isNew ? 2 : 1);
            EXPECT_TRUE(fs::equivalent(package / "recording.mov",
                                       folder / (isNew ? "new" : "earlier") / "recording.mov"));
            EXPECT_EQ(contentOf(package / "notes.txt"), "precious");
        });
    EXPECT_GE(calls, 5) << "the package is made, linked, written, synced and put in place";
    EXPECT_LT(replaced, calls);
    EXPECT_EQ(files::readProjectFile(package).name, "film") << "the last run is let live";
}

} // namespace
} // namespace vantro::app
