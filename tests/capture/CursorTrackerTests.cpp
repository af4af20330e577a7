#include "capture/session/CursorTracker.h"

#include <cmath>
#include <condition_variable>
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

  private:
    void awaitSleeper(std::unique_lock<std::mutex>& lock) {
        m_changed.wait(lock, [this] { return m_sleeperDeadline && *m_sleeperDeadline > m_now; });
    }

    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    base::HostTime m_now{1000s};
    std::optional<base::HostTime> m_sleeperDeadline;
};

class CursorTrackerTest : public testing::Test {
  protected:
    CursorTrackerTest() {
        timeline.with([this](RecordingClock& each) { each.start(zero); });
    }

    void push(base::HostDuration time, double x) {
        tracker.pointerAt({.time = zero + time, .place = {.x = x, .y = 0}});
    }
    /// Time in milliseconds and place of all that is kept.
    std::vector<std::pair<double, double>> path() const {
        std::vector<std::pair<double, double>> path;
        for (const auto& position : tracker.positions())
            path.emplace_back(std::round(position.timestamp * 1e6) / 1e3, position.x);
        return path;
    }

    ScriptedClock clock;
    const base::HostTime zero = clock.now();
    SharedRecordingClock timeline;
    CursorTracker tracker{timeline, nullptr, clock};
};

using Path = std::vector<std::pair<double, double>>;

TEST_F(CursorTrackerTest, KeepsEachPushedPlaceAtItsOwnTimeButNotTooMany) {
    push(-1ms, 7); // before the movie, and therefore its first place
    tracker.keepNewest(zero);
    push(16ms, 8);
    push(17ms, 9);
    push(18ms, 10);
    push(33ms, 11);
    push(32ms, 12); // comes too late
    EXPECT_EQ(path(), (Path{{0, 7}, {16, 8}, {33, 11}}));
}

TEST_F(CursorTrackerTest, WhereNonePushesTheNewestPlaceIsKeptEverySixteenMillisecondsToTheEnd) {
    push(0ms, 1);
    push(3ms, 2); // and rests
    tracker.start();
    clock.moveTo(zero + 16ms);
    EXPECT_EQ(path(), (Path{{0, 1}})) << "a source that pushes is waited for";
    for (const auto time : {32ms, 48ms, 64ms, 150ms, 159ms, 160ms}) // the machine slept at 64
        clock.moveTo(zero + time);
    tracker.stop(zero + 165ms);
    EXPECT_EQ(path(), (Path{{0, 1}, {32, 2}, {48, 2}, {64, 2}, {150, 2}, {165, 2}}));
    tracker.stop(zero + 200ms);
    EXPECT_EQ(path().size(), 6) << "may be stopped twice";
}

TEST_F(CursorTrackerTest, JumpsOverAPauseToWhereThePointerIsThen) {
    push(0ms, 1);
    push(16ms, 2);
    timeline.with([this](RecordingClock& each) { each.pause(zero + 20ms); });
    tracker.paused(zero + 20ms);
    push(30ms, 3);
    push(90ms, 4); // and rests
    timeline.with([this](RecordingClock& each) { each.resume(zero + 100ms); });
    tracker.resumed(zero + 100ms);
    push(104ms, 5); // too soon to be kept
    push(120ms, 6);
    EXPECT_EQ(path(), (Path{{0, 1}, {16, 2}, {19.999, 2}, {20, 4}, {40, 6}}));
}

TEST_F(CursorTrackerTest, KeepsPressesWithTheirTimeAndPlaceButNotThoseInAPause) {
    push(0ms, 5);
    const auto press = [this](base::HostDuration time, MouseButton button,
                              std::optional<model::Point> place) {
        tracker.pressed({.time = zero + time, .button = button, .place = place});
    };
    press(-1ms, MouseButton::left, model::Point{1, 1}); // before the movie
    press(1s, MouseButton::left, model::Point{-30, 30});
    timeline.with([this](RecordingClock& each) { each.pause(zero + 2s); });
    press(3s, MouseButton::left, model::Point{});
    timeline.with([this](RecordingClock& each) { each.resume(zero + 4s); });
    press(4s, MouseButton::right, {}); // where the pointer was last seen
    const auto clicks = tracker.clicks();
    ASSERT_EQ(clicks.size(), 2);
    EXPECT_EQ(clicks,
              (std::vector{model::ClickEvent{.id = clicks[0].id, .x = -30, .y = 30, .timestamp = 1},
                           model::ClickEvent{
                               .id = clicks[1].id, .x = 5, .timestamp = 2, .isRightClick = true}}));
}

} // namespace
} // namespace vantro::capture
