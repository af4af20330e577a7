#include "window/WindowFixture.h"

namespace vantro::window {
namespace {

using picker::WindowPickerModel;

TEST(OfferedWindows, AreOnScreenLargeEnoughNamedAndNotOurOwn) {
    std::vector<capture::ShareableWindow> windows;
    for (std::uint32_t id = 1; id <= 7; ++id)
        windows.push_back(test::windowOf(id, "title", "app"));
    windows[0].frame = {0, 0, 100, 100};
    windows[1].frame = {0, 0, 99, 300};
    windows[2].frame = {0, 0, 300, 99.9};
    windows[3].isOnScreen = false;
    windows[4].bundleIdentifier = "own";
    windows[5].title.clear();
    windows[6].title.clear();
    windows[6].applicationName.clear();
    const auto offered = picker::offeredWindows(windows, "own");
    ASSERT_EQ(offered.size(), 2U);
    EXPECT_EQ(offered[0].windowID, 1U);
    EXPECT_EQ(offered[1].windowID, 6U);
}

class WindowPickerTest : public test::WindowFixture {
  protected:
    WindowPickerTest() {
        content = capture::ShareableContent{};
        content->windows = {test::windowOf(1, "notes.txt", "Editor"),
                            test::windowOf(2, "", "Terminal"), test::windowOf(3, "Inbox", "")};
        state.setCaptureMode(model::CaptureMode::window);
    }

    void openPicker() {
        showWindow();
        click("record");
    }
    QString row(int index, int role) { return windows.data(windows.index(index), role).toString(); }
};

TEST_F(WindowPickerTest, ListsTheWindowsAsTheyComeAndGoAndTakesARow) {
    openPicker();
    EXPECT_TRUE(windows.isLoading());
    EXPECT_FALSE(shows("pickerMessage"));
    runTasks();
    EXPECT_FALSE(windows.isLoading());
    ASSERT_EQ(item("windowList").property("count").toInt(), 3);
    EXPECT_EQ(row(0, WindowPickerModel::title), "notes.txt");
    EXPECT_EQ(row(1, WindowPickerModel::applicationName), "Terminal");
    EXPECT_EQ(row(2, WindowPickerModel::applicationName), "Unknown App");
    content->windows.insert(content->windows.begin(), test::windowOf(4, "New", "Fourth"));
    std::erase_if(content->windows, [](const auto& window) { return window.windowID == 1; });
    std::ranges::reverse(content->windows); // somebody clicked another window
    timers.advance(std::chrono::seconds(1));
    runTasks();
    ASSERT_EQ(windows.rowCount(), 3);
    EXPECT_EQ(row(0, WindowPickerModel::applicationName), "Terminal") << "none of them moved";
    EXPECT_EQ(row(2, WindowPickerModel::title), "New");
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    runTasks();
    ASSERT_TRUE(state.selectedWindow());
    EXPECT_EQ(state.selectedWindow()->windowID, 3U);
    EXPECT_EQ(windows.rowCount(), 0) << "no longer shown";
}

TEST_F(WindowPickerTest, ARowIsChosenAlsoWhenItsTitleChangesUnderThePress) {
    openPicker();
    runTasks();
    auto& list = item("windowList");
    window().grabWindow(); // lays the rows out
    const auto first = list.mapToScene({list.width() / 2, 20}).toPoint();
    QTest::mousePress(&window(), Qt::LeftButton, {}, first);
    content->windows[0].title = "notes.txt (changed)";
    content->windows[2].title = "Inbox (1)";
    timers.advance(std::chrono::seconds(1));
    runTasks();
    EXPECT_EQ(row(0, WindowPickerModel::title), "notes.txt (changed)");
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, first);
    runTasks();
    ASSERT_TRUE(state.selectedWindow());
    EXPECT_EQ(state.selectedWindow()->title, "notes.txt (changed)");
}

TEST_F(WindowPickerTest, ARowShowsTheWindowsOwnIcon) {
    auto icon = std::make_shared<capture::WindowIcon>(
        capture::WindowIcon{.width = 64, .height = 64, .pixels = {}});
    icon->pixels.assign(std::size_t{64} * 64, 0xff10c020);
    content->windows[0].icon = icon;
    openPicker();
    runTasks();
    window().grabWindow(); // lays the rows out
    EXPECT_EQ(colorAt(item("windowIcon")).rgb(), 0xff10c020);
}

} // namespace
} // namespace vantro::window
