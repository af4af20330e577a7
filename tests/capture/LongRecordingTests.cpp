// Two hours of recording in a few seconds.
#include "capture/RecordingSession.h"
#include "capture/ResidentMemory.h"
#include "capture/ScriptedPlatform.h"
#include "media/Asset.h"
#include "support/Eventually.h"
#include "support/TemporaryFolder.h"

#include <iostream>

#include <gtest/gtest.h>

namespace vantro::capture {
namespace {

using namespace std::chrono_literals;

constexpr auto length = 2h;

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
    const double seconds = media::Asset::open(movie).duration().seconds();
    EXPECT_GE(seconds, 7200);
    EXPECT_LE(seconds, base::inSeconds(base::hostNow() - start)) << "it lasts until the stop";
    std::cout << "two hours of the screen: " << growth / 1'000'000.0 << " MB\n";
    constexpr std::int64_t indexEntry = 200; // bytes a frame, several lists of the muxer
    if (test::canMeasureMemory) {
        EXPECT_LE(growth, frames * indexEntry + 1'000'000);
    }
}

} // namespace
} // namespace vantro::capture
