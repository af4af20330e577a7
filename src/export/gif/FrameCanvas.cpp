#include "export/gif/FrameCanvas.h"

#include <algorithm>
#include <unordered_map>

namespace vantro::exporting::gif {
namespace {

// Larger, and faint ghosts stay behind on flat areas; smaller, and the noise that a video codec
// leaves in still areas is stored again and again.
constexpr int leastChange = grayDistance(2);

} // namespace

FrameCanvas::FrameCanvas(int width, int height)
    : m_width(width)
    , m_height(height)
    , m_wanted(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
    , m_shown(m_wanted.size(), Color{transparentIndex} << 24)
    , m_changed(m_wanted.size()) {}

Region FrameCanvas::findChanges(const media::PixelBuffer& bgra) {
    m_changedCount = 0;
    int left = m_width;
    int right = 0;
    int top = m_height;
    int bottom = 0;
    for (int y = 0; y < m_height; ++y) {
        const auto span = compareRow(bgra.row(0, y), y);
        if (span.end <= span.first)
            continue;
        left = std::min(left, span.first);
        right = std::max(right, span.end);
        top = std::min(top, y);
        bottom = y + 1;
    }
    m_isBlank = false;
    if (bottom == 0)
        return {};
    return {left, top, right - left, bottom - top};
}

FrameCanvas::Span FrameCanvas::compareRow(const std::uint8_t* row, int y) {
    const auto start = static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width);
    const auto* wanted = m_wanted.data() + start;
    auto* changed = m_changed.data() + start;
    Span span{m_width, 0};
    for (int x = 0; x < m_width; ++x) {
        const auto color = colorAt(row, x);
        const bool differs = color != wanted[x] && distance(color, wanted[x]) >= leastChange;
        changed[x] = differs;
        if (differs) {
            span.first = std::min(span.first, x);
            span.end = x + 1;
            ++m_changedCount;
        }
    }
    if (m_isBlank) {
        std::fill_n(changed, m_width, std::uint8_t{1});
        m_changedCount = start + static_cast<std::size_t>(m_width);
        return {0, m_width};
    }
    return span;
}

void FrameCanvas::changePalette(const Palette& palette) {
    std::unordered_map<Color, std::uint8_t> indices;
    for (std::size_t i = 0; i < palette.size(); ++i)
        indices.emplace(palette[i], static_cast<std::uint8_t>(i));
    Color last = ~Color{0};
    std::uint8_t index = transparentIndex;
    for (auto& shown : m_shown) {
        const auto color = shown & colorMask;
        if (color != last) {
            const auto found = indices.find(color);
            index = found == indices.end() ? transparentIndex : found->second;
            last = color;
        }
        shown = Color{index} << 24 | color;
    }
}

} // namespace vantro::exporting::gif
