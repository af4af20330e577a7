#include "capture/CursorTracker.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>

#include <gtest/gtest.h>

namespace vantro::capture {
namespace {

using namespace std::chrono_literals;

/// A clock that stands still until the test moves it.
class ScriptedClock final : public CaptureClock {
  public:
    base::HostTime now() override {
        const std::lock_guard lock(m_mutex);
        return m_now;
    }

    void sleepUntil(base::HostTime deadline, std::stop_token stop) override {
        std::unique_lock lock(m_mutex);
        m_sleeperDeadline = deadline;
        m_changed.notify_all();
        m_changed.wait(lock, std::move(stop), [&] { return m_now >= deadline; });
        m_sleeperDeadline.reset();
    }

    /// Returns when whoever slept has done its work and sleeps again.
    void moveTo(base::HostTime time) {
        std::unique_lock lock(m_mutex);
        awaitSleeper(lock);
        m_now = time;
        m_changed.notify_all();
        awaitSleeper(lock);
    }

    /// Moves the time under everybody's feet.
    void jumpTo(base::HostTime time) {
        const std::lock_guard lock(m_mutex);
        m_now = time;
    }

  private:
    void awaitSleeper(std::unique_lock<std::mutex>& lock) {
        m_changed.wait(lock, [this] { return m_sleeperDeadline && *m_sleeperDeadline > m_now; });
    }

    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    base::HostTime m_now{1000s};
    std::optional<base::HostTime> m_sleeperDeadline;
};

/// A pointer that stands where the test puts it; presses call the tracker's handlers.
class ScriptedPointer final : public PointerSource {
  public:
    model::Point location() override {
        const std::lock_guard lock(m_mutex);
        return m_location;
    }

    std::unique_ptr<ClickMonitor> monitorPresses(MouseButton button,
                                                 std::function<void()> handler) override {
        struct Token final : ClickMonitor {
            explicit Token(std::function<void()> onEnd) : end(std::move(onEnd)) {}
            ~Token() override { end(); }
            std::function<void()> end;
        };
        if (button == missingButton)
            return nullptr;
        m_handlers[button] = std::move(handler);
        return std::make_unique<Token>([this, button] { m_handlers.erase(button); });
    }

    void put(model::Point location) {
        const std::lock_guard lock(m_mutex);
        m_location = location;
    }
    void press(MouseButton button) { m_handlers.at(button)(); }
    std::size_t monitorCount() const { return m_handlers.size(); }

    std::optional<MouseButton> missingButton;

  private:
    std::mutex m_mutex;
    model::Point m_location;
    std::map<MouseButton, std::function<void()>> m_handlers;
};

class CursorTrackerTest : public testing::Test {
  protected:
    static constexpr model::Rect captureRect{.x = 100, .y = 50, .width = 800, .height = 600};
    static constexpr double screenHeight = 1080;

    std::unique_ptr<CursorTracker> makeTracker() {
        return std::make_unique<CursorTracker>(captureRect, screenHeight, pointer, clock);
    }

    ScriptedClock clock;
    std::shared_ptr<ScriptedPointer> pointer = std::make_shared<ScriptedPointer>();
};

TEST_F(CursorTrackerTest, SamplesAtOnceAndThenEverySixteenMilliseconds) {
    const base::HostTime zero = clock.now();
    pointer->put({.x = 100, .y = 1030}); // the capture rectangle's top-left corner
    const auto tracker = makeTracker();
    clock.jumpTo(zero + 5us); // time zero is the construction, not the start
    tracker->start();
    clock.moveTo(zero + 16ms);
    pointer->put({.x = 99.5, .y = 1080});
    clock.moveTo(zero + 17ms);
    pointer->put({.x = 1500, .y = -10});
    clock.moveTo(zero + 32ms + 5us);
    tracker->stop();
    const std::vector<model::CursorPosition> expected{
        {.x = 0, .y = 0, .timestamp = 0.000005},
        {.x = -0.5, .y = -50, .timestamp = 0.017},
        {.x = 1400, .y = 1040, .timestamp = 0.032005}};
    EXPECT_EQ(tracker->positions(), expected);
}

TEST_F(CursorTrackerTest, LeavesOutTicksThatTheMachineSleptThrough) {
    const base::HostTime zero = clock.now();
    const auto tracker = makeTracker();
    tracker->start();
    clock.moveTo(zero + 100ms); // six ticks at once
    clock.moveTo(zero + 111ms);
    clock.moveTo(zero + 112ms); // the seventh, on the old grid
    tracker->stop();
    std::vector<double> times;
    for (const auto& position : tracker->positions())
        times.push_back(position.timestamp);
    EXPECT_EQ(times, (std::vector<double>{0, 0.1, 0.112}));
}

TEST_F(CursorTrackerTest, RecordsPressesOfBothButtonsWithFreshIdentitiesAndDefaultZoom) {
    const base::HostTime zero = clock.now();
    const auto tracker = makeTracker();
    tracker->start();
    pointer->put({.x = 130, .y = 1000});
    clock.jumpTo(zero + 1s);
    pointer->press(MouseButton::left);
    ASSERT_EQ(tracker->clicks().size(), 1);
    pointer->put({.x = 0, .y = 0});
    clock.jumpTo(zero + 2s);
    pointer->press(MouseButton::right);
    const auto clicks = tracker->clicks();
    tracker->stop();
    ASSERT_EQ(clicks.size(), 2);
    model::ClickEvent left{.id = clicks[0].id, .x = 30, .y = 30, .timestamp = 1};
    model::ClickEvent right{
        .id = clicks[1].id, .x = -100, .y = 1030, .timestamp = 2, .isRightClick = true};
    EXPECT_EQ(clicks, (std::vector{left, right}));
    EXPECT_NE(clicks[0].id, clicks[1].id);
    EXPECT_EQ(clicks[1].startOffset, 1.5);
    EXPECT_EQ(clicks[1].endOffset, 1.5);
    EXPECT_EQ(clicks[1].zoomLevel, 1.5);
}

TEST_F(CursorTrackerTest, StopsWatchingAndMayBeStoppedTwice) {
    const auto tracker = makeTracker();
    tracker->start();
    EXPECT_EQ(pointer->monitorCount(), 2);
    tracker->stop();
    EXPECT_EQ(pointer->monitorCount(), 0);
    const auto positions = tracker->positions();
    clock.jumpTo(clock.now() + 1s);
    tracker->stop();
    EXPECT_EQ(tracker->positions(), positions);
    EXPECT_TRUE(tracker->clicks().empty());
}

TEST_F(CursorTrackerTest, GoesOnWithoutAButtonThatCannotBeWatched) {
    pointer->missingButton = MouseButton::left;
    const auto tracker = makeTracker();
    tracker->start();
    pointer->press(MouseButton::right);
    EXPECT_EQ(tracker->clicks().size(), 1);
    tracker->stop();
}

TEST_F(CursorTrackerTest, AClockThatRunsBackwardsIsFatal) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(
        {
            const auto tracker = makeTracker();
            tracker->start();
            clock.jumpTo(clock.now() - 1ns);
            pointer->press(MouseButton::left);
            tracker->clicks();
        },
        "ran backwards");
}

} // namespace
} // namespace vantro::capture
