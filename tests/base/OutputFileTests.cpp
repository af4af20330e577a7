#include "base/OutputFile.h"
#include "support/TemporaryFolder.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantro::base {
namespace {

using testing::HasSubstr;

long entryCount(const std::filesystem::path& folder) {
    return std::ranges::distance(std::filesystem::directory_iterator(folder));
}

auto failsWith(const std::string& file, const std::string& reason) {
    return testing::ThrowsMessage<std::filesystem::filesystem_error>(
        testing::AllOf(HasSubstr(file), HasSubstr(reason)));
}

TEST(OutputFile, ReplacesTheEarlierFileOnlyOnCommitAndLeavesNothingElseBehind) {
    test::TemporaryFolder folder;
    const auto target = folder.write("movie.mp4", "earlier");
    for (const bool isWhole : {false, true}) {
        OutputFile file(target);
        std::ofstream(file.temporaryPath()) << "newer";
        EXPECT_EQ(test::contentOf(target), "earlier");
        if (isWhole)
            file.commit();
    }
    EXPECT_EQ(test::contentOf(target), "newer");
    EXPECT_EQ(entryCount(folder.path()), 1);
}

TEST(OutputFile, GivesTheFileTheModeOfOrdinaryFiles) {
    test::TemporaryFolder folder;
    const auto mask = ::umask(022);
    const std::string text = "x";
    writeWholeFile(folder.path() / "file", text);
    ::umask(mask);
    struct stat status{};
    ASSERT_EQ(::stat((folder.path() / "file").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

TEST(OutputFile, NamesTheTargetAndTheReasonWhereItCannotBeWritten) {
    test::TemporaryFolder folder;
    const std::string text = "x";
    const auto missing = folder.path() / "missing" / "file";
    EXPECT_THAT([&] { writeWholeFile(missing, text); },
                failsWith(missing.string(), "No such file"));
    // The kernel lets nobody create files there, root neither.
    EXPECT_THAT([&] { writeWholeFile("/proc/vantro-test", text); },
                failsWith("/proc/vantro-test", ""));
    const auto occupied = folder.path() / "folder";
    std::filesystem::create_directories(occupied / "inside");
    EXPECT_THAT([&] { writeWholeFile(occupied, text); }, failsWith(occupied.string(), "directory"));
    EXPECT_EQ(entryCount(folder.path()), 1);
}

} // namespace
} // namespace vantro::base
