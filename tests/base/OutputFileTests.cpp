#include "base/OutputFile.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace vantro::base {
namespace {

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
