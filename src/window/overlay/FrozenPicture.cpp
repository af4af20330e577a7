#include "window/overlay/FrozenPicture.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>

namespace vantro::window::overlay {
namespace {

QSizeF placeSize(const capture::ChosenContent& content) {
    return content.place ? QSizeF(content.place->width, content.place->height) : QSizeF();
}

QSize pixelSize(const capture::ChosenContent& content) {
    return {content.picture->width(), content.picture->height()};
}

QSize pixelSize(const QScreen& screen) {
    return (QSizeF(screen.size()) * screen.devicePixelRatio()).toSize();
}

bool isOfSize(const QScreen& screen, const capture::ChosenContent& content) {
    return QSizeF(screen.size()) == placeSize(content) || pixelSize(screen) == pixelSize(content);
}

/// The same form, up to a pixel of rounding.
bool isOfForm(const QScreen& screen, const capture::ChosenContent& content) {
    const QSizeF pixels = pixelSize(content);
    const double height = screen.size().width() * pixels.height() / pixels.width();
    return std::abs(height - screen.size().height()) <= 1.5;
}

} // namespace

QImage imageOf(const std::shared_ptr<const media::PixelBuffer>& bgra) {
    return {
        bgra->plane(0),
        bgra->width(),
        bgra->height(),
        bgra->stride(0),
        QImage::Format_RGB32,
        [](void* kept) { delete static_cast<std::shared_ptr<const media::PixelBuffer>*>(kept); },
        new std::shared_ptr(bgra)};
}

QScreen* screenOf(const capture::ChosenContent& content) {
    const auto screens = QGuiApplication::screens();
    // What says most comes first; more than one screen says nothing.
    const auto only = [&](auto fits) -> QScreen* {
        return std::ranges::count_if(screens, fits) == 1 ? *std::ranges::find_if(screens, fits)
                                                         : nullptr;
    };
    QScreen* found = only([&](const QScreen* screen) {
        return content.place && screen->geometry().x() == content.place->x &&
               screen->geometry().y() == content.place->y && isOfForm(*screen, content) &&
               (isOfSize(*screen, content) || placeSize(content).isEmpty());
    });
    if (found == nullptr)
        found = only([&](const QScreen* screen) {
            return !content.name.empty() && screen->name().toStdString() == content.name;
        });
    if (found == nullptr)
        found = only([&](const QScreen* screen) { return isOfSize(*screen, content); });
    if (found == nullptr)
        found = only([&](const QScreen* screen) { return isOfForm(*screen, content); });
    return found;
}

bool isWholeScreen(const capture::ChosenContent& content) {
    if (!content.place || content.picture == nullptr)
        return false;
    // Whole screens may be told in units as well as in pixels, and rounded.
    constexpr double rounding = 1;
    const auto isSmaller = [&](const QSizeF& limit) {
        const auto left = limit - placeSize(content);
        return left.width() >= 0 && left.height() >= 0 &&
               std::max(left.width(), left.height()) > rounding;
    };
    return !std::ranges::all_of(QGuiApplication::screens(), [&](const QScreen* screen) {
        return !isOfSize(*screen, content) && isSmaller(screen->size());
    });
}

double pixelsPerUnit(int pixels, int width) {
    constexpr double steps = 120;
    const double exact = static_cast<double>(pixels) / std::max(width, 1);
    const double step = std::round(exact * steps) / steps;
    return std::abs(step * width - pixels) < 1 ? step : exact;
}

} // namespace vantro::window::overlay
