#include "render/software/LayerRows.h"

#include <cmath>
#include <cstring>

namespace vantro::render::software {
namespace {

void copyPixels(const std::uint8_t* from, std::ptrdiff_t begin, std::ptrdiff_t end,
                std::uint8_t* to) {
    if (end > begin)
        std::memcpy(to + begin, from + begin, static_cast<std::size_t>(end - begin));
}

std::uint8_t rounded(double value) {
    return static_cast<std::uint8_t>(std::min(255L, std::lround(value)));
}

/// Calls `rim(column, coverage)` for the pixels that the mask covers in part.
template <typename Function>
void forEachRimPixel(const MaskSpans& spans, const RoundedRect& mask, int row,
                     const Function& rim) {
    const auto walk = [&](int begin, int end) {
        for (int column = begin; column < end; ++column)
            rim(column, mask.coverage(column + 0.5, row + 0.5));
    };
    walk(spans.any.begin, spans.solid.begin);
    walk(spans.solid.end, spans.any.end);
}

} // namespace

void LayerRows::prepare(const PicturePlan& plan, const Tile& part) {
    m_plan = &plan;
    m_part = part;
    m_touched = plan.touched.clippedTo(part);
    m_spansRow = -1;
    if (m_touched.isEmpty())
        return;
    m_stretched.prepare(plan.x, plan.y, m_touched.columns);
    m_source.prepare(*plan.picture, m_stretched.texelColumns(), plan.y.taps(m_touched.rows));
    m_stretched.setInput([this](int y) { return m_source.row(y); });
    m_pixels.resize(static_cast<std::size_t>(m_touched.columns.length()) * 4);
}

/// Where the picture stands in a row that it touches.
const MaskSpans& LayerRows::spansOf(int row) {
    if (row != m_spansRow)
        m_spans = m_plan->mask ? maskSpans(*m_plan->mask, row, m_touched.columns)
                               : MaskSpans{m_touched.columns, m_touched.columns};
    m_spansRow = row;
    return m_spans;
}

bool LayerRows::covers(int row) {
    return touches(row) && spansOf(row).solid.length() == m_part.columns.length();
}

void LayerRows::write(int row, const std::uint8_t* under, std::uint8_t* out) {
    const std::ptrdiff_t width = offsetOf(m_part.columns.end);
    const PixelSpan any = touches(row) ? spansOf(row).any : PixelSpan{};
    if (any.isEmpty()) {
        if (under != nullptr)
            copyPixels(under, 0, width, out);
        return;
    }
    m_stretched.write(row, out + offsetOf(m_touched.columns.begin));
    if (under == nullptr)
        return;
    copyPixels(under, 0, offsetOf(any.begin), out);
    copyPixels(under, offsetOf(any.end), width, out);
    if (!m_plan->mask)
        return;
    forEachRimPixel(spansOf(row), *m_plan->mask, row, [&](int column, double coverage) {
        for (auto at = offsetOf(column); at < offsetOf(column) + 4; ++at)
            out[at] = rounded(under[at] + (out[at] - under[at]) * coverage);
    });
}

void LayerRows::blend(int row, std::uint8_t* out) {
    if (!touches(row) || spansOf(row).any.isEmpty())
        return;
    const MaskSpans& spans = spansOf(row);
    m_stretched.write(row, m_pixels.data());
    const auto pixelsAt = [&](int column) {
        return m_pixels.data() + std::ptrdiff_t{column - m_touched.columns.begin} * 4;
    };
    if (!spans.solid.isEmpty())
        blendPremultiplied(pixelsAt(spans.solid.begin), spans.solid.length(),
                           out + offsetOf(spans.solid.begin));
    if (!m_plan->mask)
        return;
    forEachRimPixel(spans, *m_plan->mask, row, [&](int column, double coverage) {
        const std::uint8_t* source = pixelsAt(column);
        std::uint8_t* target = out + offsetOf(column);
        const double kept = 1 - coverage * source[3] / 255;
        for (int channel = 0; channel < 4; ++channel)
            target[channel] = rounded(source[channel] * coverage + target[channel] * kept);
    });
}

} // namespace vantro::render::software
