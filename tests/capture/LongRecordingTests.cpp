// Two hours of recording in a few seconds, on clocks that the tests drive.
#include "capture/CursorTracker.h"
#include "capture/RecordingSession.h"
#include "capture/ResidentMemory.h"
#include "capture/ScriptedPlatform.h"
#include "media/Asset.h"
#include "support/Eventually.h"
#include "support/TemporaryFolder.h"

#include <condition_variable>
#include <iostream>
#include <mutex>

#include <gtest/gtest.h>

namespace vantro::capture {
namespace {

using namespace std::chrono_literals;

constexpr auto length = 2h;

/// Whoever sleeps wakes at once, on time; at the end nobody wakes any more.
class RushingClock final : public CaptureClock {
  public:
    base::HostTime now() override {
        const std::lock_guard lock(m_mutex);
        return m_now;
    }

    void sleepUntil(base::HostTime deadline, std::stop_token stop) override {
        std::unique_lock lock(m_mutex);
        if (deadline <= m_end) {
            m_now = deadline;
            return;
        }
        m_hasEnded = true;
        m_changed.notify_all();
        m_changed.wait(lock, std::move(stop), [] { return false; });
    }

    void awaitEnd() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_hasEnded; });
    }

  private:
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    base::HostTime m_now{1000s};
    base::HostTime m_end{1000s + length};
    bool m_hasEnded = false;
};

TEST(LongRecording, OfThePointerTakesNoMoreMemoryThanItsSamples) {
    RushingClock clock;
    SharedRecordingClock timeline;
    timeline.with([&](RecordingClock& each) { each.start(clock.now()); });
    CursorTracker tracker(timeline, nullptr, clock);
    tracker.pointerAt({.time = clock.now(), .place = {}});
    const auto before = test::residentMemory();
    tracker.start();
    clock.awaitEnd();
    tracker.stop(clock.now());
    const auto growth = test::residentMemory() - before;
    const auto positions = tracker.positions();
    constexpr std::size_t samples = length / 16ms; // the first place was pushed and waited for
    EXPECT_EQ(positions.size(), samples);
    EXPECT_EQ(positions.back().timestamp, 7200);
    std::cout << "two hours of the pointer: " << growth / 1'000'000.0 << " MB\n";
    // A list that grows by doubling holds the half of it twice for a moment.
    if (test::canMeasureMemory) {
        EXPECT_LE(growth, static_cast<std::int64_t>(2 * samples * sizeof(model::CursorPosition)));
    }
}

TEST(LongRecording, OfTheScreenTakesNoMoreMemoryThanTheMoviesIndex) {
    const test::TemporaryFolder folder;
    const auto movie = folder.path() / "recording.mov";
    const auto script = std::make_shared<test::StreamScript>();
    RecordingSession recorder({}, [&] { return std::make_unique<test::ScriptedPlatform>(script); });
    ASSERT_TRUE(recorder.choose({}));
    recorder.start(movie);
    const auto picture = media::PixelBuffer::allocate(media::PixelFormat::i420, 320, 240);
    // The two hours end now. The first ten minutes fill caches and queues.
    const base::HostTime start = base::hostNow() - length;
    std::int64_t before = 0;
    int frames = 0;
    for (auto time = 0s; time <= length; time += 1s, ++frames) {
        if (time == 10min)
            before = test::residentMemory();
        const auto deliver = [&] {
            return script->output->screenSample({.status = FrameStatus::complete,
                                                 .presentationTime = start + time,
                                                 .pixels = picture});
        };
        // The encoder takes its time.
        ASSERT_TRUE(test::eventually([&] { return deliver() == SampleDisposition::taken; }));
    }
    const auto growth = test::residentMemory() - before;
    recorder.stop();
    EXPECT_EQ(recorder.statistics().framesCaptured, frames);
    EXPECT_NEAR(media::Asset::open(movie).duration().seconds(), 7200, 5);
    std::cout << "two hours of the screen: " << growth / 1'000'000.0 << " MB\n";
    constexpr std::int64_t indexEntry = 200; // bytes a frame, several lists of the muxer
    if (test::canMeasureMemory) {
        EXPECT_LE(growth, frames * indexEntry + 1'000'000);
    }
}

} // namespace
} // namespace vantro::capture
