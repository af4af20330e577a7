#include "editor/bars/BarsFixture.h"

#include <QAccessible>

namespace vantro::editor::bars {
namespace {

void paintSquare(media::PixelBuffer& bgra, int left, int top) {
    for (int y = top; y < top + 24; ++y)
        std::fill_n(bgra.mutableRow(0, y) + std::ptrdiff_t{left} * 4, 24 * 4, 230);
}

/// Something opens where the pointer has gone, while far away something blinks all the time.
class SuggestedZoomsTest : public TimelineBarsTest {
  protected:
    void openDesk(std::vector<model::ClickEvent> zooms = {}) {
        const std::filesystem::path movie =
            files.filePath(QStringLiteral("shown.mov")).toStdString();
        test::writeMovie(movie, 320, 180, 10, 40, [](media::PixelBuffer& bgra, int frame) {
            test::fill(bgra, {40, 40, 60});
            if (frame % 3 == 0)
                paintSquare(bgra, 270, 140);
            if (frame >= 15)
                paintSquare(bgra, 80, 60);
        });
        open(std::move(zooms), {model::TimelineSegment{}}, metadata());
    }
    static model::RecordingMetadata blindMetadata() {
        model::RecordingMetadata result;
        result.endTime = 4;
        result.captureRect = {0, 0, 320, 180};
        return result;
    }
    static model::RecordingMetadata metadata() {
        auto result = blindMetadata();
        for (int i = 0; i < 200; ++i) {
            const double time = i * 0.02;
            const double way = std::clamp((time - 0.8) / 0.2, 0.0, 1.0);
            const double back = time > 2.5 ? 60 : 0;
            result.cursorPositions.push_back(
                {time < 0.2 ? 10 : 280 - way * 190, 150 - way * 80 + back, time});
        }
        return result;
    }
    void search() {
        click("suggestZooms");
        ASSERT_TRUE(QTest::qWaitFor([this] { return !actions.suggestions()->isSearching(); }));
        settle();
    }
    int suggested() { return actions.suggestions()->count(); }
};

TEST_F(SuggestedZoomsTest, AreNoPartOfTheEditUntilAClickAcceptsThem) {
    openDesk();
    search();
    ASSERT_EQ(suggested(), 1);
    EXPECT_NEAR(actions.suggestions()->zooms()[0].timestamp, 1.5, 0.2);
    EXPECT_NEAR(actions.suggestions()->zooms()[0].x, 90, 10);
    EXPECT_TRUE(state.editableClickEvents().empty());
    EXPECT_FALSE(state.document().canUndo());
    drag("zoomBar", 1.4, 2);
    EXPECT_EQ(suggested(), 1) << "a drag accepts nothing";
    EXPECT_EQ(preview.transport()->currentTime(), 0) << "nor does it search the film";
    tap("zoomBar", 1.4);
    EXPECT_EQ(suggested(), 0);
    ASSERT_EQ(state.editableClickEvents().size(), 1U);
    EXPECT_EQ(undoName(), "Accept Suggested Zoom");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(state.editableClickEvents().empty());
    EXPECT_EQ(suggested(), 1) << "suggested again";
    click("acceptSuggestions");
    EXPECT_EQ(state.editableClickEvents().size(), 1U);
    EXPECT_FALSE(shows("acceptSuggestions"));
}

TEST_F(SuggestedZoomsTest, TheKeyboardAndAssistiveTechnologyReachThem) {
    openDesk({zoomAt(3.4)});
    search();
    auto* bar = item("zoomBar").childItems().at(2); // ground, gestures, picture
    auto* node = QAccessible::queryAccessibleInterface(bar);
    ASSERT_EQ(node->childCount(), 2);
    auto* told = node->child(0);
    EXPECT_TRUE(told->text(QAccessible::Name).startsWith(QStringLiteral("Suggested zoom at 0:01")));
    EXPECT_EQ(told->role(), QAccessible::Button);
    told->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    settle();
    EXPECT_TRUE(actions.suggestions()->selected());
    EXPECT_TRUE(text("timelineHint").contains(QStringLiteral("picture changed")));
    for (const auto dismiss : {Qt::Key_Delete, Qt::Key_Escape}) {
        key(dismiss);
        EXPECT_EQ(suggested(), 0);
        EXPECT_EQ(state.editableClickEvents().size(), 1U) << "the zoom beside it stays";
        search();
        ASSERT_EQ(suggested(), 1);
        node->child(0)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        settle();
    }
    key(Qt::Key_Return);
    EXPECT_EQ(state.editableClickEvents().size(), 2U);
    EXPECT_EQ(suggested(), 0);
}

TEST_F(SuggestedZoomsTest, SayWhatIsMissingAndGoWithTheirRecording) {
    openDesk();
    search();
    ASSERT_EQ(suggested(), 1);
    showEditor({}, blindMetadata());
    EXPECT_EQ(suggested(), 0) << "of another recording";
    search();
    EXPECT_EQ(text("timelineHint"),
              "Nothing to suggest: this desktop did not tell where the pointer was.");
    auto still = metadata();
    for (auto& each : still.cursorPositions)
        each.y = 40;
    showEditor({}, still);
    click("suggestZooms");
    click("suggestZooms");
    EXPECT_FALSE(actions.suggestions()->isSearching()) << "given up";
    std::filesystem::remove(files.filePath(QStringLiteral("shown.mov")).toStdString());
    search();
    EXPECT_EQ(suggested(), 1);
    EXPECT_TRUE(
        text("timelineHint").startsWith(QStringLiteral("The picture could not be searched")));
}

} // namespace
} // namespace vantro::editor::bars
