#include "media/TimeStretcher.h"

#include "media/AudioBuffer.h"
#include "media/Fraction.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace vantro {
namespace {

constexpr int channels = mixing::channelCount;
// Longer blocks smear what begins suddenly, shorter ones roughen deep voices.
constexpr int blockLength = mixing::sampleRate / 100;
// Half a wave of 70 Hz: less breaks the waves of voices, more moves sounds audibly in time.
constexpr int searchReach = mixing::sampleRate * 7 / 1000;
constexpr int nearbyLength = blockLength + 2 * searchReach;
// The search looks at every fourth place first, then around the best.
constexpr int coarseStep = 4;

using Mono = std::array<float, nearbyLength>;

template <std::size_t length>
void mixToMono(std::span<const float> stereo, std::array<float, length>& mono) {
    for (std::size_t i = 0; i * channels < stereo.size(); ++i)
        mono[i] = stereo[i * channels] + stereo[i * channels + 1];
}

/// How alike the two waves are, from −1 to 1; 0 where either is silent. Every `step`th sample.
double similarity(const float* a, const float* b, int step) {
    double product = 0;
    double energyA = 0;
    double energyB = 0;
    for (int i = 0; i < blockLength; i += step) {
        product += static_cast<double>(a[i]) * b[i];
        energyA += static_cast<double>(a[i]) * a[i];
        energyB += static_cast<double>(b[i]) * b[i];
    }
    constexpr double silence = 1e-12;
    return energyA < silence || energyB < silence ? 0 : product / std::sqrt(energyA * energyB);
}

/// Raised-cosine weights of a piece that fades in over one block; the rest to 1 fades out.
const std::array<float, blockLength>& risingWeights() {
    static const auto weights = [] {
        std::array<float, blockLength> values{};
        for (int i = 0; i < blockLength; ++i)
            values[static_cast<std::size_t>(i)] = static_cast<float>(
                0.5 - 0.5 * std::cos(std::numbers::pi * (i + 0.5) / blockLength));
        return values;
    }();
    return weights;
}

} // namespace

TimeStretcher::TimeStretcher(std::int64_t sourceLength, std::int64_t targetLength,
                             SampleReader source)
    : m_sourceLength(sourceLength)
    , m_targetLength(std::max<std::int64_t>(targetLength, 1))
    , m_source(std::move(source))
    , m_tailSound(std::size_t{blockLength} * channels)
    , m_nearby(std::size_t{nearbyLength} * channels)
    , m_block(std::size_t{blockLength} * channels)
    , m_taken(m_block.size()) {}

void TimeStretcher::read(std::span<float> samples) {
    while (!samples.empty()) {
        if (m_taken == m_block.size())
            makeBlock();
        const auto count = std::min(samples.size(), m_block.size() - m_taken);
        std::copy_n(m_block.begin() + static_cast<std::ptrdiff_t>(m_taken), count, samples.begin());
        m_taken += count;
        samples = samples.subspan(count);
    }
}

/// Fades from the piece that sounds to the one that the end of this block asks for.
void TimeStretcher::makeBlock() {
    const Fraction rate(m_sourceLength, m_targetLength);
    const Fraction blockEnd(WideInteger{m_blockIndex + 1} * blockLength, 1);
    const auto ideal = static_cast<std::int64_t>((blockEnd * rate).rounded()) - blockLength;
    m_source(m_tail, m_tailSound);
    const std::int64_t head = ideal == m_tail ? m_tail : bestStart(ideal);
    const float* rising = m_nearby.data() + (head - (ideal - searchReach)) * channels;
    if (head == m_tail)
        rising = m_tailSound.data();
    const auto& weights = risingWeights();
    for (std::size_t i = 0; i < m_block.size(); ++i) {
        const float weight = weights[i / channels];
        m_block[i] = m_tailSound[i] * (1 - weight) + rising[i] * weight;
    }
    m_tail = head + blockLength;
    m_taken = 0;
    ++m_blockIndex;
}

/// Where near `ideal` the wave is most like the one that sounds.
std::int64_t TimeStretcher::bestStart(std::int64_t ideal) {
    const std::int64_t base = ideal - searchReach;
    m_source(base, m_nearby);
    std::array<float, blockLength> sounding{};
    Mono nearby{};
    mixToMono<blockLength>(m_tailSound, sounding);
    mixToMono<nearbyLength>(m_nearby, nearby);
    // Nothing from before the source's start may be heard; a piece past its end is silent.
    const int first =
        static_cast<int>(std::clamp<std::int64_t>(-base, 0, std::int64_t{2} * searchReach));
    int best = std::max(searchReach, first);
    double bestSimilarity = similarity(sounding.data(), nearby.data() + best, coarseStep);
    for (int offset = first; offset <= 2 * searchReach; offset += coarseStep) {
        const double found = similarity(sounding.data(), nearby.data() + offset, coarseStep);
        if (found > bestSimilarity + 1e-6) {
            best = offset;
            bestSimilarity = found;
        }
    }
    const int from = std::max(first, best - coarseStep + 1);
    const int to = std::min(2 * searchReach, best + coarseStep - 1);
    bestSimilarity = similarity(sounding.data(), nearby.data() + best, 1);
    for (int offset = from; offset <= to; ++offset) {
        const double found = similarity(sounding.data(), nearby.data() + offset, 1);
        if (found > bestSimilarity + 1e-6) {
            best = offset;
            bestSimilarity = found;
        }
    }
    return base + best;
}

} // namespace vantro
