#include "export/gif/ColorMatcher.h"

#include <algorithm>
#include <utility>

namespace vantro::exporting::gif {
namespace {

// The price of dither noise beside the error of the mean, both as squares. At 0 every color
// between two entries is dithered (grain, many bytes); at 1 none is (bands in gradients).
constexpr float noisePrice = 0.7F;

// Entries closer than this show no band worth breaking up, and the grain would only cost bytes.
constexpr int leastStep = grayDistance(4);

} // namespace

ColorMatcher::ColorMatcher(Palette palette)
    : m_palette(std::move(palette)), m_nearest(m_palette), m_cache(std::size_t{1} << cacheBits) {}

int ColorMatcher::error(Color color) {
    const auto mix = match(color);
    return distance(color, m_palette[mix.share < 128 ? mix.low : mix.high]);
}

const ColorMatcher::Neighbors& ColorMatcher::neighbors(int index) {
    auto& list = m_neighbors[static_cast<std::size_t>(index)];
    if (!list.empty())
        return list;
    const auto center = m_palette[static_cast<std::size_t>(index)];
    for (std::size_t i = 0; i < m_palette.size(); ++i) {
        const auto color = m_palette[i];
        const int length = distance(center, color);
        if (length >= leastStep || static_cast<int>(i) == index)
            list.push_back({static_cast<std::uint8_t>(i),
                            static_cast<float>(red(color) - red(center)) * redWeight,
                            static_cast<float>(green(color) - green(center)) * greenWeight,
                            static_cast<float>(blue(color) - blue(center)) * blueWeight,
                            static_cast<float>(length)});
    }
    // The entry itself, at distance 0, comes first: the list is never empty again.
    const auto kept = std::min<std::size_t>(list.size(), neighborCount + 1);
    std::partial_sort(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(kept), list.end(),
                      [](const auto& a, const auto& b) { return a.length < b.length; });
    list.resize(kept);
    return list;
}

/// With e from the nearest entry to the color, d from there to a neighbor and the share t of the
/// neighbor, the cost is |e - t d|² + noisePrice · t (1 - t) |d|². Its minimum over t is known in
/// closed form, and never above 1/2 as the first entry is the nearest.
ColorMix ColorMatcher::compute(Color color) {
    const int nearest = m_nearest.find(color);
    const auto first = static_cast<std::uint8_t>(nearest);
    const auto center = m_palette[first];
    if (distance(color, center) == 0)
        return {first, first, 0};
    const auto er = static_cast<float>(red(color) - red(center));
    const auto eg = static_cast<float>(green(color) - green(center));
    const auto eb = static_cast<float>(blue(color) - blue(center));
    float bestGain = 0;
    float bestShare = 0;
    std::uint8_t second = first;
    for (const auto& neighbor : neighbors(nearest)) {
        const float along = er * neighbor.red + eg * neighbor.green + eb * neighbor.blue -
                            noisePrice * neighbor.length / 2;
        if (along <= 0 || neighbor.length == 0)
            continue;
        const float share = along / ((1 - noisePrice) * neighbor.length);
        const float gain = share * along;
        if (gain > bestGain) {
            bestGain = gain;
            bestShare = share;
            second = neighbor.index;
        }
    }
    const auto share = static_cast<std::uint8_t>(std::min(bestShare, 0.5F) * 256);
    // Both sides of an even mix must use the same pattern, else a seam shows.
    if (first <= second)
        return {first, second, share};
    return {second, first, static_cast<std::uint8_t>(share == 0 ? 255 : 256 - share)};
}

} // namespace vantro::exporting::gif
