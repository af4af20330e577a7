#include "capture/session/CursorJournal.h"
#include "support/Eventually.h"
#include "support/TemporaryFolder.h"

#include <fstream>
#include <optional>

#include <gtest/gtest.h>

namespace vantro::capture {
namespace {

TEST(CursorJournal, GivesBackWhatWasWrittenUpToTheDamage) {
    const test::TemporaryFolder folder;
    const auto movie = folder.path() / "recording.mov";
    model::RecordingMetadata written;
    written.captureRect = {-10.5, 20, 300, 200};
    written.displayID = 7;
    written.displayScaleFactor = 2;
    std::optional<CursorJournal> journal(std::in_place, movie, written);
    for (const model::CursorPosition& position :
         {model::CursorPosition{1.0 / 3, -1e-9, 0}, model::CursorPosition{1e5, 0.1, 0.016}}) {
        journal->add(position);
        written.cursorPositions.push_back(position);
    }
    for (const bool isRight : {false, true}) {
        auto& click = written.clickEvents.emplace_back();
        click.x = 12.25;
        click.timestamp = 0.01;
        click.isRightClick = isRight;
        journal->add(click);
    }
    EXPECT_TRUE(test::eventually([&] { // a click is written at once, and what came before it
        const auto soFar = base::readJournal(cursorJournalPath(movie));
        return soFar.size() == 5;
    }));
    for (int i = 1; i <= 9; ++i) { // one more than are written at once
        const model::CursorPosition position{1, 2, 0.016 * (i + 1)};
        journal->add(position);
        written.cursorPositions.push_back(position);
    }
    journal.reset(); // has written all of it then
    written.endTime = 0.016 * 10;
    std::ofstream(cursorJournalPath(movie), std::ios::app) << "at 1 2\nat 1 2 3\n";

    auto read = readCursorJournal(movie);
    ASSERT_EQ(read.clickEvents.size(), 2U);
    for (std::size_t i = 0; i < 2; ++i)
        read.clickEvents[i].id = written.clickEvents[i].id; // made anew
    EXPECT_EQ(read, written);
    std::ofstream(cursorJournalPath(movie)) << "{}\n";
    EXPECT_THROW(readCursorJournal(movie), std::runtime_error);
}

} // namespace
} // namespace vantro::capture
