#include "media/av/encode/LiveRate.h"

#include "media/av/encode/EncoderSetup.h"

#include <algorithm>
#include <cmath>

namespace vantro::media::av {
namespace {

constexpr int coarsestQuantizer = 51; // of H.264
constexpr double quantizersPerHalving = 6;

// Seconds. A shorter memory makes pictures differ in sharpness within a movement; with a longer one
// a sudden movement takes much more than the rate before it is noticed.
constexpr double memory = 1;
// The first picture is a keyframe, which costs much more than those that follow: it counts as if
// it stood for so many seconds, about as long as keyframes are apart.
constexpr double shortestDuration = 0.5;
// Seconds within which a surplus is made up for, and worth of which is saved up at most.
constexpr double settling = 2;

} // namespace

int LiveRate::quantizer(double time) {
    const double passed = m_isFirst ? 0 : time - m_time;
    m_isFirst = false;
    m_time = time;
    m_duration += passed;
    m_work *= std::exp(-passed / memory);
    m_surplus = std::max(m_surplus - m_rate * passed, -m_rate * settling);
    const double remembered =
        memory * (1 - std::exp(-std::max(m_duration, shortestDuration) / memory));
    const double aim = m_rate * std::clamp(1 - m_surplus / (m_rate * settling), 0.5, 2.0);
    const double exact = quantizersPerHalving * std::log2(m_work / remembered / aim);
    m_quantizer = static_cast<int>(
        std::lround(std::clamp<double>(exact, finestQuantizer, coarsestQuantizer)));
    return m_quantizer;
}

void LiveRate::encoded(std::size_t bytes) {
    const double bits = 8 * static_cast<double>(bytes);
    m_work += bits * std::exp2(m_quantizer / quantizersPerHalving);
    m_surplus += bits;
}

} // namespace vantro::media::av
