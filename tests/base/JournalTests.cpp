#include "base/Journal.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace vantro::base {
namespace {

TEST(Journal, WritesNothingBehindATornLineAndTellsWhatCannotBeOpened) {
    JournalWriter full("/dev/full");
    EXPECT_FALSE(full.append("lost"));
    EXPECT_FALSE(full.append("lost as well"));
    EXPECT_THROW(JournalWriter("/no such folder/journal"), std::filesystem::filesystem_error);
    EXPECT_THROW(readJournal("/no such folder/journal"), std::filesystem::filesystem_error);
    test::TemporaryFolder folder;
    EXPECT_EQ(readJournal(folder.write("torn", "whole\nhal")), std::vector<std::string>{"whole"});
}

} // namespace
} // namespace vantro::base
