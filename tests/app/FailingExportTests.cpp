// Exports by the program itself on disks that fail: at every single call that changes a file.
#include "app/FailingCalls.h"
namespace vantro::app {
namespace {

using namespace vantro::test;

/// Exports a project into a folder that holds one earlier file.
class FailingExport : public test::CommandLine, public ::testing::WithParamInterface<const char*> {
  protected:
    FailingExport() {
        edit.segments = {{{.startFraction = 0, .endFraction = 0.6, .speed = 2}}};
        save("short.vantro");
    }

    std::filesystem::path target() const { return out / (std::string("film.") + GetParam()); }

    void writeEarlierFile() const {
        std::filesystem::create_directories(out);
        std::ofstream(target()) << "earlier";
    }

    void expectOnlyEarlierFile() const {
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(out), {}), 1);
        EXPECT_EQ(std::filesystem::file_size(target()), 7U);
    }

    int exportAtEveryCall(const test::Manner& manner, const std::function<void()>& prepare,
                          const std::function<void(const test::FailedRun&)>& check) const {
        return test::forEveryCall(manner, out, "-u DISPLAY",
                                  "export --force " + path("short.vantro") + " --output '" +
                                      target().string() + "'",
                                  prepare, check);
    }

    std::filesystem::path out = folder / "out";
};

TEST_P(FailingExport, leavesTheEarlierFileWhicheverCallFails) {
    for (const auto& manner :
         {test::Manner::onwards(ENOSPC), test::Manner::onwards(EROFS), test::Manner::once(EIO)}) {
        const int calls = exportAtEveryCall(
            manner, [&] { writeEarlierFile(); },
            [&](const test::FailedRun& run) {
                test::expectClearError(run, target(), manner.error);
                expectOnlyEarlierFile();
            });
        EXPECT_GE(calls, 4); // it is made, written, synced and renamed
    }
}

TEST_P(FailingExport, tellsWhenItsFileVanishes) {
    exportAtEveryCall(
        test::Manner::vanish(), [&] { std::filesystem::create_directories(out); },
        [&](const test::FailedRun& run) {
            test::expectClearError(run, target(), ENOENT);
            EXPECT_FALSE(std::filesystem::exists(out));
        });
}

TEST_P(FailingExport, writesWholeFilesWhereTheDiskTakesThemInParts) {
    writeEarlierFile();
    ASSERT_EQ(test::vantro("export --force " + path("short.vantro") + " --output " + path("whole") +
                           "." + GetParam())
                  .exitCode,
              0);
    const auto whole = test::probe(folder / (std::string("whole.") + GetParam()));
    exportAtEveryCall(
        test::Manner::shortWrites(), [&] { writeEarlierFile(); },
        [&](const test::FailedRun& run) {
            EXPECT_EQ(run.result.exitCode, 0);
            const auto found = test::probe(target());
            EXPECT_EQ(found["streams"], whole["streams"]);
            EXPECT_EQ(found["format"]["size"], whole["format"]["size"]);
        });
}

INSTANTIATE_TEST_SUITE_P(Formats, FailingExport, ::testing::Values("mp4", "gif"),
                         [](const auto& test) { return std::string(test.param); });

} // namespace
} // namespace vantro::app
