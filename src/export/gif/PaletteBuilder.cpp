#include "export/gif/PaletteBuilder.h"

#include "export/gif/NearestColor.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include <libimagequant.h>

namespace vantro::exporting::gif {
namespace {

// A power of two. Bounds the memory and the time that choosing takes.
constexpr std::size_t bucketCount = 16384;
constexpr std::size_t mostUsed = bucketCount / 2;

// libimagequant's scale from 1 (best) to 10. From 8 on it only cuts; below, it refines the palette
// itself, with threads that spin and double the processor time. refine() does as well for a
// fraction.
constexpr int speed = 8;

// Each round brings the picture a little closer to the original; a fourth hardly any more.
constexpr int refinements = 3;

struct LiqDeleter {
    void operator()(liq_attr* attributes) const { liq_attr_destroy(attributes); }
    void operator()(liq_histogram* histogram) const { liq_histogram_destroy(histogram); }
    void operator()(liq_result* result) const { liq_result_destroy(result); }
};
template <typename Object>
using Liq = std::unique_ptr<Object, LiqDeleter>;

Color packed(liq_color color) {
    return Color{color.r} << 16 | Color{color.g} << 8 | Color{color.b};
}

Palette quantize(const std::vector<liq_histogram_entry>& entries) {
    const Liq<liq_attr> attributes(liq_attr_create());
    if (!attributes)
        throw std::bad_alloc();
    liq_set_max_colors(attributes.get(), maxColors);
    liq_set_speed(attributes.get(), speed);
    const Liq<liq_histogram> histogram(liq_histogram_create(attributes.get()));
    if (!histogram || liq_histogram_add_colors(histogram.get(), attributes.get(), entries.data(),
                                               static_cast<int>(entries.size()), 0) != LIQ_OK)
        throw std::bad_alloc();
    liq_result* made = nullptr;
    if (liq_histogram_quantize(histogram.get(), attributes.get(), &made) != LIQ_OK)
        throw std::bad_alloc(); // the only failure that opaque colors and no quality limit leave
    const Liq<liq_result> result(made);
    const auto* found = liq_get_palette(result.get());
    Palette palette;
    for (unsigned i = 0; i < found->count; ++i)
        palette.push_back(packed(found->entries[i]));
    return palette;
}

/// Moves each color to the mean of those that it stands for (Lloyd's algorithm).
void refine(Palette& palette, const std::vector<liq_histogram_entry>& entries) {
    struct Sum {
        std::uint64_t weight = 0;
        std::uint64_t red = 0;
        std::uint64_t green = 0;
        std::uint64_t blue = 0;
    };
    const NearestColor nearest(palette);
    std::vector<Sum> sums(palette.size());
    for (const auto& [color, weight] : entries) {
        auto& sum = sums[static_cast<std::size_t>(nearest.find(packed(color)))];
        sum.weight += weight;
        sum.red += std::uint64_t{weight} * color.r;
        sum.green += std::uint64_t{weight} * color.g;
        sum.blue += std::uint64_t{weight} * color.b;
    }
    for (std::size_t i = 0; i < palette.size(); ++i) {
        const auto& sum = sums[i];
        const auto mean = [&](std::uint64_t of) {
            return static_cast<Color>((of + sum.weight / 2) / sum.weight);
        };
        if (sum.weight > 0)
            palette[i] = mean(sum.red) << 16 | mean(sum.green) << 8 | mean(sum.blue);
    }
}

} // namespace

PaletteBuilder::PaletteBuilder() : m_buckets(bucketCount) {}

Color PaletteBuilder::keyOf(Color color) const {
    const Color channelMask = 0xFFU << m_droppedBits & 0xFFU;
    return color & (channelMask << 16 | channelMask << 8 | channelMask);
}

PaletteBuilder::Bucket& PaletteBuilder::bucketFor(Color key) {
    auto at = (key * 0x9E3779B1U) >> 18 & (bucketCount - 1);
    while (m_buckets[at].weight != 0 && m_buckets[at].key != key)
        at = (at + 1) & (bucketCount - 1);
    return m_buckets[at];
}

void PaletteBuilder::add(Color color, unsigned weight) {
    auto* bucket = &bucketFor(keyOf(color));
    if (bucket->weight == 0) {
        if (m_used == mostUsed) {
            coarsen();
            add(color, weight);
            return;
        }
        bucket->key = keyOf(color);
        ++m_used;
    }
    bucket->weight += weight;
    bucket->red += std::uint64_t{weight} * static_cast<unsigned>(red(color));
    bucket->green += std::uint64_t{weight} * static_cast<unsigned>(green(color));
    bucket->blue += std::uint64_t{weight} * static_cast<unsigned>(blue(color));
}

void PaletteBuilder::coarsen() {
    ++m_droppedBits;
    const auto finer = std::exchange(m_buckets, std::vector<Bucket>(bucketCount));
    m_used = 0;
    for (const auto& from : finer) {
        if (from.weight == 0)
            continue;
        auto& to = bucketFor(keyOf(from.key));
        m_used += to.weight == 0;
        to.key = keyOf(from.key);
        to.weight += from.weight;
        to.red += from.red;
        to.green += from.green;
        to.blue += from.blue;
    }
}

Palette PaletteBuilder::build() const {
    std::vector<liq_histogram_entry> entries;
    entries.reserve(m_used);
    for (const auto& bucket : m_buckets) {
        if (bucket.weight == 0)
            continue;
        const auto mean = [&](std::uint64_t sum) {
            return static_cast<unsigned char>((sum + bucket.weight / 2) / bucket.weight);
        };
        entries.push_back(
            {{mean(bucket.red), mean(bucket.green), mean(bucket.blue), 255}, bucket.weight});
    }
    if (entries.empty())
        return {0};
    auto palette = quantize(entries);
    for (int round = 0; round < refinements; ++round)
        refine(palette, entries);
    return palette;
}

} // namespace vantro::exporting::gif
