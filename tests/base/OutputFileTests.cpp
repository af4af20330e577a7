#include "base/OutputFile.h"
#include "support/TemporaryFolder.h"

#include <algorithm>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantro::base {
namespace {

long entryCount(const std::filesystem::path& folder) {
    return std::ranges::distance(std::filesystem::directory_iterator(folder));
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

} // namespace
} // namespace vantro::base
