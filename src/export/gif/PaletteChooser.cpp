#include "export/gif/PaletteChooser.h"

#include "export/gif/PaletteBuilder.h"

#include <algorithm>

namespace vantro::exporting::gif {
namespace {

constexpr std::size_t sampleSize = 4096;
constexpr std::size_t mostCounted = std::size_t{1} << 18;

// What changes now comes first, but what stands still is likely to move next.
constexpr std::size_t changedShare = 3;

// A palette may err more than a new one would: a new one costs up to 768 bytes and, made anew for
// each frame of a camera move, a quarter of the time. Beyond this it pays in what is seen.
double tolerated(double attainable) {
    return attainable * 1.5 + grayDistance(2);
}

Palette makePalette(const media::PixelBuffer& bgra, const FrameCanvas& canvas) {
    const auto width = static_cast<std::size_t>(bgra.width());
    const auto total = width * static_cast<std::size_t>(bgra.height());
    const auto changed = canvas.changedCount();
    const auto weight =
        static_cast<unsigned>(std::max<std::size_t>(1, (total - changed) * changedShare / changed));
    const auto step = (total + mostCounted - 1) / mostCounted;
    PaletteBuilder builder;
    for (std::size_t at = 0; at < total; at += step) {
        const auto color =
            colorAt(bgra.row(0, static_cast<int>(at / width)), static_cast<int>(at % width));
        builder.add(color, canvas.isChanged(at) ? weight : 1);
    }
    return builder.build();
}

} // namespace

PaletteChooser::Choice PaletteChooser::choose(const media::PixelBuffer& bgra,
                                              const FrameCanvas& canvas) {
    takeSample(bgra, canvas);
    const auto* before = m_global ? m_latest : nullptr;
    auto& matcher = best(bgra, canvas);
    const bool isOther = before != nullptr && m_latest != &matcher;
    m_latest = &matcher;
    return {&matcher, &matcher == m_global.get(), isOther};
}

ColorMatcher& PaletteChooser::best(const media::PixelBuffer& bgra, const FrameCanvas& canvas) {
    if (m_global) {
        const auto tolerance = tolerated(m_attainable);
        if (errorOf(*m_global) <= tolerance)
            return *m_global;
        if (m_local && errorOf(*m_local) <= tolerance)
            return *m_local;
    }
    auto& fresh = m_global ? m_local : m_global;
    fresh = std::make_unique<ColorMatcher>(makePalette(bgra, canvas));
    m_latest = nullptr;
    m_attainable = errorOf(*fresh);
    return *fresh;
}

double PaletteChooser::errorOf(ColorMatcher& matcher) const {
    double sum = 0;
    for (const auto color : m_sample)
        sum += matcher.error(color);
    return sum / static_cast<double>(m_sample.size());
}

void PaletteChooser::takeSample(const media::PixelBuffer& bgra, const FrameCanvas& canvas) {
    m_sample.clear();
    const auto width = static_cast<std::size_t>(bgra.width());
    const auto total = width * static_cast<std::size_t>(bgra.height());
    const auto step = std::max<std::size_t>(1, canvas.changedCount() / sampleSize);
    std::size_t seen = 0;
    for (std::size_t at = 0; at < total; ++at) {
        if (!canvas.isChanged(at) || seen++ % step != 0)
            continue;
        m_sample.push_back(
            colorAt(bgra.row(0, static_cast<int>(at / width)), static_cast<int>(at % width)));
    }
}

} // namespace vantro::exporting::gif
