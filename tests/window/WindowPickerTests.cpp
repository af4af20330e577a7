#include "capture/RecordingTarget.h"
#include "window/WindowFixture.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gmock/gmock.h>

namespace vantro::window {
namespace {

using picker::WindowPickerModel;
using testing::ElementsAre;

capture::ShareableWindow offered(std::uint32_t id, const std::string& title,
                                 const std::string& application) {
    auto window = test::windowOf(id, title, {0, 0, 400, 300});
    window.applicationName = application;
    window.bundleIdentifier = application;
    window.isOnScreen = true;
    return window;
}

std::vector<std::uint32_t> idsOf(const std::vector<capture::ShareableWindow>& windows) {
    std::vector<std::uint32_t> ids;
    for (const auto& window : windows)
        ids.push_back(window.windowID);
    return ids;
}

TEST(OfferedWindows, AreOnScreenLargeEnoughNamedAndNotOurOwn) {
    std::vector<capture::ShareableWindow> windows;
    for (std::uint32_t id = 1; id <= 7; ++id)
        windows.push_back(offered(id, "title", "app"));
    windows[0].frame = {0, 0, 100, 100};
    windows[1].frame = {0, 0, 99, 300};
    windows[2].frame = {0, 0, 300, 99.9};
    windows[3].isOnScreen = false;
    windows[4].bundleIdentifier = "own";
    windows[5].title.clear();
    windows[6].title.clear();
    windows[6].applicationName.clear();
    EXPECT_THAT(idsOf(picker::offeredWindows(windows, "own")), ElementsAre(1, 6));
}

class WindowPickerTest : public test::WindowFixture {
  protected:
    WindowPickerTest() {
        content = capture::ShareableContent{};
        content->windows = {offered(1, "notes.txt", "Editor"), offered(2, "", "Terminal"),
                            offered(3, "Inbox", "")};
        state.setCaptureMode(model::CaptureMode::window);
    }

    void openPicker() {
        showWindow();
        click("record");
    }
    QString row(int index, int role) { return windows.data(windows.index(index), role).toString(); }
};

TEST_F(WindowPickerTest, ListsTheWindowsOnceTheyAreKnownAndTakesARow) {
    openPicker();
    EXPECT_TRUE(windows.isLoading());
    EXPECT_FALSE(shows("pickerMessage"));
    runTasks();
    EXPECT_FALSE(windows.isLoading());
    ASSERT_EQ(item("windowList").property("count").toInt(), 3);
    EXPECT_EQ(row(0, WindowPickerModel::title), "notes.txt");
    EXPECT_EQ(row(1, WindowPickerModel::applicationName), "Terminal");
    EXPECT_EQ(row(2, WindowPickerModel::applicationName), "Unknown App");
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    runTasks();
    ASSERT_TRUE(state.selectedWindow());
    EXPECT_EQ(state.selectedWindow()->windowID, 2U);
    EXPECT_EQ(windows.rowCount(), 0) << "no longer shown";
}

TEST_F(WindowPickerTest, FollowsWindowsThatComeGoAndChangeWithoutMovingTheOthers) {
    openPicker();
    runTasks();
    content->windows.insert(content->windows.begin(), offered(4, "New", "Fourth"));
    std::erase_if(content->windows, [](const auto& window) { return window.windowID == 1; });
    std::ranges::reverse(content->windows); // somebody clicked another window
    timers.advance(std::chrono::seconds(1));
    runTasks();
    ASSERT_EQ(windows.rowCount(), 3);
    EXPECT_EQ(row(0, WindowPickerModel::applicationName), "Terminal");
    EXPECT_EQ(row(2, WindowPickerModel::title), "New");
    EXPECT_FALSE(windows.window(3));
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

std::shared_ptr<const capture::WindowIcon> iconOf(std::uint32_t color) {
    auto icon = std::make_shared<capture::WindowIcon>(
        capture::WindowIcon{.width = 64, .height = 64, .pixels = {}});
    icon->pixels.assign(std::size_t{64} * 64, color);
    return icon;
}

TEST_F(WindowPickerTest, ARowShowsTheWindowsOwnIconAndFollowsIt) {
    content->windows = {offered(1, "notes.txt", "Editor")};
    content->windows[0].icon = iconOf(0xff10c020);
    openPicker();
    const auto shown = [this] {
        runTasks();
        window().grabWindow(); // lays the rows out
        const auto& icon = item("windowIcon");
        const auto middle = icon.mapToScene(icon.boundingRect().center());
        return window().grabWindow().pixelColor(middle.toPoint()).rgb();
    };
    EXPECT_EQ(shown(), 0xff10c020);
    content->windows[0].icon = iconOf(0xffc02010);
    timers.advance(std::chrono::seconds(1));
    EXPECT_EQ(shown(), 0xffc02010);
    content->windows[0].icon = nullptr; // a tile with its initial
    timers.advance(std::chrono::seconds(1));
    EXPECT_NE(shown(), 0xffc02010);
}

} // namespace
} // namespace vantro::window
