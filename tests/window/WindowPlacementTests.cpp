#include "window/WindowFixture.h"
#include "window/platform/WindowPlacement.h"

namespace vantro::window {
namespace {

class WindowPlacementTest : public test::WindowFixture {
  protected:
    WindowPlacementTest() { showWindow(); }
    bool isMaximized() { return window().windowStates().testFlag(Qt::WindowMaximized); }
    void newRecording() {
        state.reset();
        settle();
    }

    std::optional<WindowPlacement> placement;
};

TEST_F(WindowPlacementTest, TheEditorComesBackInItsSizeAndTheSmallScreensStaySmall) {
    placement.emplace(window(), state, preferences);
    showEditor();
    window().resize(790, 500);
    EXPECT_TRUE(QTest::qWaitFor([this] { return preferences.editorSize() == QSize(790, 500); }));
    newRecording();
    EXPECT_EQ(window().size(), QSize(340, 120));
    showEditor();
    EXPECT_EQ(window().size(), QSize(790, 500));

    window().showMaximized();
    EXPECT_TRUE(QTest::qWaitFor([this] { return preferences.editorMaximized(); }));
    newRecording();
    EXPECT_FALSE(isMaximized());
    EXPECT_EQ(window().size(), QSize(340, 120));
    showEditor();
    EXPECT_TRUE(isMaximized());
}

} // namespace
} // namespace vantro::window
