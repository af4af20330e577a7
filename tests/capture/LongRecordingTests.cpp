// Two hours of recording in a few seconds.
#include "capture/ScriptedPlatform.h"
#include "capture/session/RecordingSession.h"
#include "media/Asset.h"
#include "support/Eventually.h"
#include "support/TemporaryFolder.h"

#include <fstream>
#include <iostream>

#include <gtest/gtest.h>
#include <unistd.h>

namespace vantro::capture {
namespace {

using namespace std::chrono_literals;

constexpr auto length = 2h;

/// Bytes of memory that this process occupies.
std::int64_t residentMemory() {
    std::int64_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    return pages * sysconf(_SC_PAGESIZE);
}

// The address sanitizer keeps what is freed, so that nothing can be said about memory under it.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool canMeasureMemory = false;
#else
constexpr bool canMeasureMemory = true;
#endif

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
            before = residentMemory();
        const auto deliver = [&] {
            return script->output->screenSample({.status = FrameStatus::complete,
                                                 .presentationTime = start + time,
                                                 .pixels = picture});
        };
        // The encoder takes its time.
        ASSERT_TRUE(test::eventually([&] { return deliver() == SampleDisposition::taken; }));
    }
    const auto growth = residentMemory() - before;
    recorder.stop();
    EXPECT_EQ(recorder.statistics().framesCaptured, frames);
    const double seconds = media::Asset::open(movie).duration().seconds();
    EXPECT_GE(seconds, 7200);
    EXPECT_LE(seconds, base::inSeconds(base::hostNow() - start)) << "it lasts until the stop";
    std::cout << "two hours of the screen: " << growth / 1'000'000.0 << " MB\n";
    constexpr std::int64_t indexEntry = 200; // bytes a frame, several lists of the muxer
    if (canMeasureMemory) {
        EXPECT_LE(growth, frames * indexEntry + 1'000'000);
    }
}

} // namespace
} // namespace vantro::capture
