#include "base/OutputFile.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantro::base {
namespace {

using testing::HasSubstr;

long entryCount(const std::filesystem::path& folder) {
    return std::ranges::distance(std::filesystem::directory_iterator(folder));
}

std::string messageOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::filesystem::filesystem_error& error) {
        return error.what();
    }
    return {};
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
    EXPECT_THAT(messageOf([&] { writeWholeFile(missing, text); }),
                testing::AllOf(HasSubstr(missing.string()), HasSubstr("No such file")));
    // The kernel lets nobody create files there, root neither.
    EXPECT_THAT(messageOf([&] { writeWholeFile("/proc/vantro-test", text); }),
                HasSubstr("/proc/vantro-test"));
    const auto occupied = folder.path() / "folder";
    std::filesystem::create_directories(occupied / "inside");
    EXPECT_THAT(messageOf([&] { writeWholeFile(occupied, text); }),
                testing::AllOf(HasSubstr(occupied.string()), HasSubstr("directory")));
    EXPECT_EQ(entryCount(folder.path()), 1);
}

/// Runs in a process of its own, since the limit that stands for a full disk holds for a process.
int writeBeyondTheSizeLimit(const std::filesystem::path& target) {
    std::signal(SIGXFSZ, SIG_IGN); // the write then fails with EFBIG
    const rlimit limit{.rlim_cur = 1'000, .rlim_max = 1'000};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0)
        return 2;
    const std::string text(100'000, 'x');
    const auto message = messageOf([&] { writeWholeFile(target, text); });
    const bool isClear = message.find(target.string()) != std::string::npos &&
                         message.find("too large") != std::string::npos;
    return isClear ? 0 : 1;
}

TEST(OutputFile, KeepsTheEarlierFileWhenRoomRunsOutHalfWay) {
    test::TemporaryFolder folder;
    const auto target = folder.write("project.json", "earlier");
    const auto child = ::fork();
    if (child == 0)
        ::_exit(writeBeyondTheSizeLimit(target));
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(test::contentOf(target), "earlier");
    EXPECT_EQ(entryCount(folder.path()), 1);
}

} // namespace
} // namespace vantro::base
