#pragma once

#include "media/values/MediaTime.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantro::media {

/// How sound is kept between decoding and encoding.
namespace mixing {

inline constexpr int sampleRate = 48'000;
inline constexpr int channelCount = 2;

} // namespace mixing

/// A stretch of sound in the mix format: 32-bit float, left and right in turn, full scale ±1.
struct AudioBuffer {
    MediaTime presentationTime;
    std::vector<float> samples;

    std::int64_t frameCount() const {
        return static_cast<std::int64_t>(samples.size() / mixing::channelCount);
    }
};

} // namespace vantro::media
