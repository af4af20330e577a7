#include "capture/sound/SimulatedDevice.h"

namespace vantro::capture::sound {
namespace {

TEST(LongSound, KeepsAnHourOfAWrongClockInStep) {
    for (const double ppm : {200.0, -200.0})
        expectStepFor(60, ppm);
}

} // namespace
} // namespace vantro::capture::sound
