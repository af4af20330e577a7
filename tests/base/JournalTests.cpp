#include "base/Journal.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::base {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Journal, KeepsWholeLinesAsTheyAreWritten) {
    test::TemporaryFolder folder;
    const auto path = folder.path() / "journal";
    JournalWriter writer(path);
    EXPECT_THAT(readJournal(path), IsEmpty());
    EXPECT_TRUE(writer.append("one"));
    EXPECT_TRUE(writer.append(""));
    EXPECT_TRUE(writer.append("three 3"));
    EXPECT_THAT(readJournal(path), ElementsAre("one", "", "three 3"));
    folder.write("torn", "whole\nhal");
    EXPECT_THAT(readJournal(folder.path() / "torn"), ElementsAre("whole"));
}

TEST(Journal, WritesNothingBehindATornLineAndTellsWhatCannotBeOpened) {
    JournalWriter full("/dev/full");
    EXPECT_FALSE(full.append("lost"));
    EXPECT_FALSE(full.append("lost as well"));
    EXPECT_THROW(JournalWriter("/no such folder/journal"), std::filesystem::filesystem_error);
    EXPECT_THROW(readJournal("/no such folder/journal"), std::filesystem::filesystem_error);
}

} // namespace
} // namespace vantro::base
