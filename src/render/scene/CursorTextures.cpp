#include "render/scene/CursorTextures.h"

#include "base/Fatal.h"
#include "render/scene/ArrowDrawing.h"

#include <cstdlib>
#include <cstring>
#include <optional>

#include <X11/Xcursor/Xcursor.h>

namespace vantro::render {
namespace {

constexpr float nominalHeight = 24; // cursor units of a standard arrow
constexpr int largestBitmap = 1024; // pixels a side; themes end well below
constexpr int smallestLevel = 12;   // pixels; no cursor is drawn much smaller

struct DestroyImages {
    void operator()(XcursorImages* images) const { XcursorImagesDestroy(images); }
};

/// The theme's arrow at its largest size; nothing when there is no theme.
std::optional<CursorImage> themeCursor() {
    constexpr int asLargeAsThereIs = 4096;
    // Set once by the desktop before the program starts, and never by us.
    const char* theme = std::getenv("XCURSOR_THEME"); // NOLINT(concurrency-mt-unsafe)
    const std::unique_ptr<XcursorImages, DestroyImages> images(
        XcursorLibraryLoadImages("left_ptr", theme, asLargeAsThereIs));
    if (!images || images->nimage < 1)
        return {};
    const XcursorImage& image = *images->images[0];
    const int width = static_cast<int>(image.width);
    const int height = static_cast<int>(image.height);
    if (width < 1 || height < 1 || width > largestBitmap || height > largestBitmap ||
        image.size < 1)
        return {};
    auto pixels = media::PixelBuffer::allocate(media::PixelFormat::bgra, width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const XcursorPixel pixel = image.pixels[y * width + x];
            std::uint8_t* out = pixels->mutableRow(0, y) + std::ptrdiff_t{x} * 4;
            for (unsigned channel = 0; channel < 4; ++channel)
                out[channel] = static_cast<std::uint8_t>(pixel >> (8 * channel));
        }
    const float unit = nominalHeight / static_cast<float>(image.size);
    return CursorImage{std::move(pixels), static_cast<float>(width) * unit,
                       static_cast<float>(height) * unit, static_cast<float>(image.xhot) * unit,
                       static_cast<float>(image.yhot) * unit};
}

/// `picture` with `margin` transparent pixels around it and sides that are multiples of `multiple`.
std::shared_ptr<media::PixelBuffer> padded(const media::PixelBuffer& picture, int margin,
                                           int multiple) {
    const auto grown = [&](int side) {
        return (side + 2 * margin + multiple - 1) / multiple * multiple;
    };
    auto out = media::PixelBuffer::allocate(media::PixelFormat::bgra, grown(picture.width()),
                                            grown(picture.height()));
    for (int y = 0; y < out->height(); ++y) {
        std::uint8_t* row = out->mutableRow(0, y);
        std::memset(row, 0, static_cast<std::size_t>(out->width()) * 4);
        const int from = y - margin;
        if (from >= 0 && from < picture.height())
            std::memcpy(row + std::ptrdiff_t{margin} * 4, picture.row(0, from),
                        static_cast<std::size_t>(picture.width()) * 4);
    }
    return out;
}

} // namespace

CursorImage standardCursor(CursorStyle style) {
    if (style == CursorStyle::theme)
        if (auto cursor = themeCursor())
            return *std::move(cursor);
    return drawnArrow();
}

std::shared_ptr<media::PixelBuffer> halved(const media::PixelBuffer& picture) {
    base::require(picture.format() == media::PixelFormat::bgra, "only bgra pictures can be halved");
    auto out = media::PixelBuffer::allocate(media::PixelFormat::bgra, (picture.width() + 1) / 2,
                                            (picture.height() + 1) / 2);
    for (int y = 0; y < out->height(); ++y) {
        const std::uint8_t* upper = picture.row(0, 2 * y);
        const std::uint8_t* lower = picture.row(0, std::min(2 * y + 1, picture.height() - 1));
        std::uint8_t* target = out->mutableRow(0, y);
        for (int x = 0; x < out->width(); ++x) {
            const std::ptrdiff_t left = std::ptrdiff_t{x} * 8;
            const std::ptrdiff_t right =
                std::ptrdiff_t{std::min(2 * x + 1, picture.width() - 1)} * 4;
            for (int channel = 0; channel < 4; ++channel)
                target[std::ptrdiff_t{x} * 4 + channel] =
                    static_cast<std::uint8_t>((upper[left + channel] + upper[right + channel] +
                                               lower[left + channel] + lower[right + channel] + 2) /
                                              4);
        }
    }
    return out;
}

CursorTextures::CursorTextures(const CursorImage& cursor) : m_image(cursor) {
    base::require(cursor.pixels && cursor.pixels->format() == media::PixelFormat::bgra &&
                      cursor.width > 0,
                  "cursor without a picture");
    int levels = 1;
    while ((cursor.pixels->width() >> levels) >= smallestLevel)
        ++levels;
    // One transparent pixel is left around the coarsest level, and no level is rounded, so that all
    // of them cover the same rectangle and fade out before its edge.
    const int margin = 1 << (levels - 1);
    const float unit = cursor.width / static_cast<float>(cursor.pixels->width());
    const float border = static_cast<float>(margin) * unit;
    m_levels.push_back(padded(*cursor.pixels, margin, margin));
    for (int level = 1; level < levels; ++level)
        m_levels.push_back(halved(*m_levels.back()));
    m_image.pixels = m_levels.front();
    m_image.width = static_cast<float>(m_image.pixels->width()) * unit;
    m_image.height = static_cast<float>(m_image.pixels->height()) * unit;
    m_image.hotSpotX += border;
    m_image.hotSpotY += border;
}

const ImagePointer& CursorTextures::textureFor(double drawnWidth) const {
    std::size_t level = 0;
    while (level + 1 < m_levels.size() && m_levels[level + 1]->width() >= drawnWidth)
        ++level;
    return m_levels[level];
}

} // namespace vantro::render
