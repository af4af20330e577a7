#include "export/gif/FrameEncoder.h"

#include "base/Fatal.h"

#include <algorithm>

namespace vantro::exporting::gif {
namespace {

// Below this many pixels a table of just the colors in use may be cheaper than the global one's
// longer codes; both are tried.
constexpr int smallImage = 16384;

} // namespace

FrameEncoder::FrameEncoder(int width, int height)
    : m_width(width), m_height(height), m_canvas(width, height) {}

Bytes FrameEncoder::fileHeader() const {
    return gif::fileHeader(m_width, m_height, m_chooser.globalPalette());
}

Bytes FrameEncoder::encode(const media::PixelBuffer& bgra) {
    base::require(bgra.format() == media::PixelFormat::bgra && bgra.width() == m_width &&
                      bgra.height() == m_height,
                  "GIF frame of another shape");
    const auto region = m_canvas.findChanges(bgra);
    if (region.width == 0)
        return {};
    const auto choice = m_chooser.choose(bgra, m_canvas);
    if (choice.isOther)
        m_canvas.changePalette(choice.matcher->palette());
    drawChanges(bgra, region, *choice.matcher);
    if (!choice.isGlobal)
        return encodeWithOwnTable(region, choice.matcher->palette());
    auto image = encodeWithGlobalTable(region);
    if (region.width * region.height <= smallImage) {
        auto other = encodeWithOwnTable(region, choice.matcher->palette());
        if (other.size() < image.size())
            return other;
    }
    return image;
}

void FrameEncoder::drawChanges(const media::PixelBuffer& bgra, Region region,
                               ColorMatcher& matcher) {
    m_symbols.resize(static_cast<std::size_t>(region.width) * region.height);
    m_used.fill(false);
    auto* symbols = m_symbols.data();
    for (int y = region.y; y < region.y + region.height; ++y) {
        const auto* row = bgra.row(0, y);
        auto at = static_cast<std::size_t>(y) * m_width + region.x;
        for (int x = region.x; x < region.x + region.width; ++x, ++at, ++symbols) {
            if (!m_canvas.isChanged(at)) {
                *symbols = {transparentIndex, m_canvas.shownIndex(at)};
                m_used[transparentIndex] = true;
                continue;
            }
            const auto wanted = colorAt(row, x);
            const auto index = matcher.indexAt(wanted, x, y);
            *symbols = {index, m_canvas.shownIndex(at) == index ? transparentIndex : index};
            m_used[index] = true;
            m_canvas.draw(at, wanted, index, matcher.palette()[index]);
        }
    }
}

Bytes FrameEncoder::encodeWithGlobalTable(Region region) {
    auto bytes = imageHeader(region, transparentIndex, {});
    m_lzw.encode(m_symbols, 8, bytes);
    return bytes;
}

Bytes FrameEncoder::encodeWithOwnTable(Region region, const Palette& palette) {
    std::array<std::uint8_t, 256> renumbered{};
    Palette table;
    int transparent = -1;
    for (std::size_t i = 0; i < m_used.size(); ++i) {
        if (!m_used[i])
            continue;
        renumbered[i] = static_cast<std::uint8_t>(table.size());
        if (i == transparentIndex)
            transparent = renumbered[i];
        table.push_back(i < palette.size() ? palette[i] : 0);
    }
    std::vector<Symbols> symbols;
    symbols.reserve(m_symbols.size());
    for (const auto pixel : m_symbols) {
        const auto one = renumbered[pixel.one];
        symbols.push_back({one, m_used[pixel.other] ? renumbered[pixel.other] : one});
    }
    auto bytes = imageHeader(region, transparent, table);
    m_lzw.encode(symbols, std::max(2, tableBits(static_cast<int>(table.size()))), bytes);
    return bytes;
}

} // namespace vantro::exporting::gif
