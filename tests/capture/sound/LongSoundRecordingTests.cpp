#include "capture/sound/SoundOffsets.h"

#include <fmt/format.h>

namespace vantro::capture::sound {
namespace {

INSTANTIATE_TEST_SUITE_P(, SoundRecording, testing::Values(Kind::pipewire, Kind::pulseaudio),
                         serverName);

TEST_P(SoundRecording, StaysInStepForTenMinutes) {
    Recording recording(systemOnly);
    const auto offsets = soundOffsets(GetParam(), recording, 60, 10);
    fmt::print("sound after picture: {:.1f} ms at the start, {:.1f} ms at the end\n",
               offsets.front() * 1000, offsets.back() * 1000);
    EXPECT_NEAR(offsets.front(), 0, 0.02);
    EXPECT_NEAR(offsets.back(), 0, 0.02);
}

} // namespace
} // namespace vantro::capture::sound
