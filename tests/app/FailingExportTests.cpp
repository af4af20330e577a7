// Exports by the program itself on disks that fail: at every single call that changes a file.
#include "app/FailingCalls.h"
namespace vantro::app {
namespace {

using namespace vantro::test;

/// Exports a project into a folder that holds one earlier file.
class FailingExport : public CommandLine, public ::testing::WithParamInterface<const char*> {
  protected:
    FailingExport() {
        edit.segments = {{{.startFraction = 0, .endFraction = 0.6, .speed = 2}}};
        save("short.vantro");
    }

    std::filesystem::path target() const { return out / (std::string("film.") + GetParam()); }

    int exportAtEveryCall(const Manner& manner,
                          const std::function<void(const FailedRun&)>& check) {
        return forEveryCall(
            manner, out, "-u DISPLAY",
            "export --force " + path("short.vantro") + " --output '" + target().string() + "'",
            [&] { folder.write(target(), "earlier"); }, check);
    }

    std::filesystem::path out = folder / "out";
};

TEST_P(FailingExport, leavesTheEarlierFileWhicheverCallFails) {
    for (const auto& manner :
         {Manner::onwards(ENOSPC), Manner::onwards(EROFS), Manner::once(EIO)}) {
        const int calls = exportAtEveryCall(manner, [&](const FailedRun& run) {
            expectClearError(run, target(), manner.error);
            EXPECT_EQ(std::distance(std::filesystem::directory_iterator(out), {}), 1);
            EXPECT_EQ(contentOf(target()), "earlier");
        });
        EXPECT_GE(calls, 4); // it is made, written, synced and renamed
    }
}

TEST_P(FailingExport, writesWholeFilesWhereTheDiskTakesThemInParts) {
    ASSERT_EQ(vantro("export --force " + path("short.vantro") + " --output " + path("whole") + "." +
                     GetParam())
                  .exitCode,
              0);
    const auto whole = probe(folder / (std::string("whole.") + GetParam()));
    exportAtEveryCall(Manner::shortWrites(), [&](const FailedRun& run) {
        EXPECT_EQ(run.result.exitCode, 0);
        const auto found = probe(target());
        EXPECT_EQ(found["streams"], whole["streams"]);
        EXPECT_EQ(found["format"]["size"], whole["format"]["size"]);
    });
}

INSTANTIATE_TEST_SUITE_P(Formats, FailingExport, ::testing::Values("mp4", "gif"),
                         [](const auto& test) { return std::string(test.param); });

} // namespace
} // namespace vantro::app
