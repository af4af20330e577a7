#include "render/software/Backdrop.h"

#include "media/color/ColorConversion.h"
#include "render/software/SourceRows.h"
#include "render/software/StretchedRows.h"

#include <cmath>
#include <cstring>

namespace vantro::render::software {
namespace {

/// Rows that a worker takes at once.
constexpr int bandHeight = 32;

std::uint32_t opaquePixel(const model::BackgroundColor& color) {
    const auto channel = [](double value) { // by way of float, as a shader gets it
        const double shown = std::clamp(double{static_cast<float>(value)}, 0.0, 1.0);
        return static_cast<std::uint32_t>(std::lround(shown * 255));
    };
    return 0xFF000000U | channel(color.red) << 16U | channel(color.green) << 8U |
           channel(color.blue);
}

void drawColor(const model::BackgroundColor& color, PixelSpan rows, media::PixelBuffer& out) {
    const std::uint32_t pixel = opaquePixel(color);
    for (int y = rows.begin; y < rows.end; ++y)
        for (int x = 0; x < out.width(); ++x)
            std::memcpy(out.mutableRow(0, y) + std::ptrdiff_t{x} * 4, &pixel, sizeof pixel);
}

void drawImage(const media::PixelBuffer& image, double scale, PixelSpan rows,
               media::PixelBuffer& out) {
    const auto columns =
        SampleAxis::stretched(image.width(), 0, image.width(), 0, out.width(), scale);
    const auto lines =
        SampleAxis::stretched(image.height(), 0, image.height(), 0, out.height(), scale);
    StretchedRows stretched;
    SourceRows source;
    stretched.prepare(columns, lines, {0, out.width()});
    source.prepare(image, stretched.texelColumns(), lines.taps(rows));
    stretched.setInput([&source](int y) { return source.row(y); });
    for (int y = rows.begin; y < rows.end; ++y) {
        std::uint8_t* row = out.mutableRow(0, y);
        stretched.write(y, row);
        for (int x = 0; x < out.width(); ++x) // premultiplied color over black is itself
            row[std::ptrdiff_t{x} * 4 + 3] = 255;
    }
}

} // namespace

void Backdrop::update(const Scene::Background& background, PixelSize canvas,
                      base::WorkerPool& workers) {
    Key key{background.color, background.picture, background.shadow};
    if (m_shown && key == m_key)
        return;
    m_key = std::move(key);
    m_i420IsCurrent = false;
    const auto [width, height] = canvas;
    const auto bgra = media::PixelBuffer::allocate(media::PixelFormat::bgra, width, height);
    const AlphaImage& shadow = *m_shadow.imageFor(m_key.shadow);
    const int bands = (height + bandHeight - 1) / bandHeight;
    workers.forEach(static_cast<std::size_t>(bands), [&](std::size_t band, unsigned) {
        const int begin = static_cast<int>(band) * bandHeight;
        const PixelSpan rows{begin, std::min(begin + bandHeight, shadow.height)};
        if (m_key.picture)
            drawImage(*m_key.picture, m_key.shadow.scale, rows, *bgra);
        else
            drawColor(m_key.color, rows, *bgra);
        for (int y = rows.begin; y < rows.end; ++y)
            darken(shadow.row(y), shadow.width, bgra->mutableRow(0, y));
    });
    m_shown = bgra;
}

const media::PixelBuffer& Backdrop::as(media::PixelFormat format) {
    if (format == media::PixelFormat::bgra)
        return *m_shown;
    const bool fits =
        m_i420 && m_i420->width() == m_shown->width() && m_i420->height() == m_shown->height();
    if (!fits)
        m_i420 = media::PixelBuffer::allocate(media::PixelFormat::i420, m_shown->width(),
                                              m_shown->height());
    if (!m_i420IsCurrent)
        media::color::convertBgraToI420(*m_shown, *m_i420);
    m_i420IsCurrent = true;
    return *m_i420;
}

} // namespace vantro::render::software
