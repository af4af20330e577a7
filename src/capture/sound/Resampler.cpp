#include "capture/sound/Resampler.h"

#include <array>
#include <cmath>
#include <numbers>

namespace vantro::capture::sound {
namespace {

constexpr std::size_t taps = 32;
constexpr std::size_t before = taps / 2 - 1; // taps at and before a place's whole part, but one
// Between two phases the kernel is interpolated, which errs by less than 16 bits resolve.
constexpr std::size_t phases = 512;
constexpr double windowShape = 8; // Kaiser's beta: side lobes below −80 dB
constexpr std::size_t lanes = 8;

using Kernel = std::array<float, taps>;

double bessel(double x) {
    double sum = 1;
    double term = 1;
    for (int k = 1; k < 30; ++k) {
        term *= x / 2 / k;
        sum += term * term;
    }
    return sum;
}

/// The kernels for places between two samples, the first at a sample and the last at the next.
std::array<Kernel, phases + 1> makeKernels() {
    std::array<Kernel, phases + 1> kernels{};
    for (std::size_t phase = 0; phase <= phases; ++phase)
        for (std::size_t tap = 0; tap < taps; ++tap) {
            const double x = static_cast<double>(tap) - static_cast<double>(before) -
                             static_cast<double>(phase) / phases;
            const double edge = x / (taps / 2.0);
            const double window =
                std::abs(edge) < 1
                    ? bessel(windowShape * std::sqrt(1 - edge * edge)) / bessel(windowShape)
                    : 0;
            const double angle = std::numbers::pi * x;
            const double sinc = x == 0 ? 1 : std::sin(angle) / angle;
            kernels.at(phase).at(tap) = static_cast<float>(sinc * window);
        }
    return kernels;
}

} // namespace

Resampler::Resampler(int channels)
    : m_channels(channels)
    , m_waiting(static_cast<std::size_t>(channels), std::vector<float>(before))
    , m_begin(-static_cast<std::int64_t>(before))
    , m_next(before) {}

void Resampler::process(std::span<const float> input, double stretch, std::vector<float>& output) {
    const auto channels = static_cast<std::size_t>(m_channels);
    for (std::size_t channel = 0; channel < channels; ++channel)
        for (std::size_t i = channel; i < input.size(); i += channels)
            m_waiting[channel].push_back(std::isfinite(input[i]) ? input[i] : 0);
    const double step = 1 / (1 + stretch);
    const auto last = static_cast<double>(m_waiting.front().size()) - (taps - before);
    for (; m_next < last; m_next += step) {
        output.resize(output.size() + channels);
        read(m_next, output.data() + output.size() - channels);
    }
    const auto used = static_cast<std::size_t>(m_next) - before;
    for (auto& waiting : m_waiting)
        waiting.erase(waiting.begin(), waiting.begin() + static_cast<std::ptrdiff_t>(used));
    m_begin += static_cast<std::int64_t>(used);
    m_next -= static_cast<double>(used);
}

void Resampler::read(double place, float* frame) const {
    static const auto kernels = makeKernels();
    const auto whole = static_cast<std::size_t>(place);
    const double phase = (place - static_cast<double>(whole)) * phases;
    const auto index = static_cast<std::size_t>(phase);
    const auto part = static_cast<float>(phase - static_cast<double>(index));
    const Kernel& left = kernels[index];
    const Kernel& right = kernels[index + 1];
    Kernel kernel;
    for (std::size_t tap = 0; tap < taps; ++tap)
        kernel[tap] = left[tap] + part * (right[tap] - left[tap]);
    for (const auto& waiting : m_waiting) {
        const float* samples = waiting.data() + whole - before;
        std::array<float, lanes> sums{}; // independent of each other, so that they are vectors
        for (std::size_t tap = 0; tap < taps; tap += lanes)
            for (std::size_t lane = 0; lane < lanes; ++lane)
                sums[lane] += kernel[tap + lane] * samples[tap + lane];
        float sum = 0;
        for (const float each : sums)
            sum += each;
        *frame++ = sum;
    }
}

} // namespace vantro::capture::sound
