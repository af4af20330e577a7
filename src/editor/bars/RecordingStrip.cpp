#include "editor/bars/RecordingStrip.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace vantro::editor::bars {
namespace {

constexpr double waveHeight = 14;    // points, below pictures
constexpr double narrowestTile = 12; // points
/// Of its brightness that a picture keeps: white becomes (105, 105, 105), from which white and the
/// handles differ by more than 4.5 to 1 (WCAG 2.1, contrast ratio).
constexpr double kept = 105.0 / 255;

/// The pixels as an image, without a copy; valid as long as they are.
QImage imageOf(const media::PixelBuffer& pixels) {
    return {pixels.plane(0), pixels.width(), pixels.height(), pixels.stride(0),
            QImage::Format_RGB32};
}

} // namespace

RecordingStrip::RecordingStrip() : BarPicture(QImage::Format_RGB32) {}

void RecordingStrip::setStrip(StripModel* strip) {
    if (m_strip)
        m_strip->disconnect(this);
    m_strip = strip;
    if (m_strip)
        connect(m_strip, &StripModel::changed, this, &RecordingStrip::polish);
    Q_EMIT madeFor();
}

void RecordingStrip::follow(TimelineModel& timeline) {
    for (const auto signal : {&TimelineModel::axisChanged, &TimelineModel::contentChanged})
        connect(&timeline, signal, this, &RecordingStrip::polish);
}

bool RecordingStrip::isEmpty() const {
    return !m_strip || (!m_strip->hasPictures() && !m_strip->hasSound());
}

double RecordingStrip::picturesHeight() const {
    if (!m_strip->hasPictures())
        return 0;
    return m_strip->hasSound() ? std::max(height() - waveHeight, 1.0) : height();
}

void RecordingStrip::paint(QPainter& painter) {
    const auto& axis = timeline()->axis();
    const double duration = timeline()->duration();
    const double tileWidth = std::max(m_strip->aspect() * picturesHeight(), narrowestTile);
    const auto tiles = StripTiles::of(axis, duration, m_strip->hasPictures() ? tileWidth : 0);
    m_strip->look(tiles, axis.start * duration);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(boundingRect(), m_emptyColor);
    paintPictures(painter, tiles, tileWidth);
    if (m_strip->hasSound())
        paintWave(painter);
}

void RecordingStrip::paintPictures(QPainter& painter, const StripTiles& tiles, double width) const {
    const QColor shade(0, 0, 0, static_cast<int>(std::lround((1 - kept) * 255)));
    const double pictureWidth = m_strip->aspect() * picturesHeight();
    const double ratio = painter.device()->devicePixelRatioF();
    const auto onPixel = [ratio](double x) { return std::round(x * ratio) / ratio; };
    for (const auto& tile : tiles.tiles) {
        const auto pixels = m_strip->picture(tile);
        if (!pixels)
            continue;
        // Else rounding leaves a line of the ground between neighbors.
        const double left = onPixel(tile.x);
        const QRectF whole(left, 0, onPixel(tile.x + width) - left, picturesHeight());
        painter.fillRect(whole, m_groundColor);
        painter.drawImage(QRectF(left, 0, onPixel(tile.x + pictureWidth) - left, picturesHeight()),
                          imageOf(*pixels));
        painter.fillRect(whole, shade);
    }
}

/// A line for each pixel of the screen, from the lowest to the highest sample of its time.
void RecordingStrip::paintWave(QPainter& painter) const {
    const auto& axis = timeline()->axis();
    const double duration = timeline()->duration();
    const double top = picturesHeight();
    painter.fillRect(QRectF(0, top, width(), height() - top), m_groundColor);
    const double middle = (top + height()) / 2;
    const double scale = (height() - top - 2) / 2 / 127;
    const double pixel = 1 / painter.device()->devicePixelRatioF();
    for (double x = 0; x < width(); x += pixel) {
        const auto peak = m_strip->peak(axis.unlimitedPlaceAt(x) * duration,
                                        axis.unlimitedPlaceAt(x + pixel) * duration);
        if (peak.isUnknown())
            continue;
        const double extent = std::max((peak.high - peak.low) * scale, pixel);
        painter.fillRect(QRectF(x, middle - peak.high * scale, pixel, extent), m_waveColor);
    }
}

} // namespace vantro::editor::bars
