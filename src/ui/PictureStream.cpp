#include "ui/PictureStream.h"

#include <utility>

namespace vantro::ui {

void PictureStream::setArea(QSize pixels) {
    if (m_area == pixels)
        return;
    m_area = pixels;
    Q_EMIT areaChanged();
}

void PictureStream::deliver(Picture picture) {
    std::optional<Picture> replaced;
    const bool isNews = m_pictures.with([&](Pictures& pictures) {
        if (pictures.isWaiting)
            replaced = std::move(pictures.newest);
        pictures.newest = std::move(picture);
        pictures.isWaiting = true;
        return !std::exchange(pictures.isAnnounced, true);
    });
    if (replaced && m_watcher != nullptr)
        m_watcher->pictureReplaced(*replaced);
    if (isNews)
        QMetaObject::invokeMethod(this, &PictureStream::announce, Qt::QueuedConnection);
}

void PictureStream::announce() {
    m_pictures.with([](Pictures& pictures) { pictures.isAnnounced = false; });
    Q_EMIT changed();
}

void PictureStream::clear() {
    m_pictures.with([](Pictures& pictures) {
        pictures.newest.reset();
        pictures.isWaiting = false;
        pictures.drawn.reset();
    });
    Q_EMIT changed();
}

std::optional<PictureStream::Picture> PictureStream::draw() {
    return m_pictures.with([](Pictures& pictures) {
        if (std::exchange(pictures.isWaiting, false))
            pictures.drawn = pictures.newest;
        return pictures.newest;
    });
}

void PictureStream::shown() {
    const auto now = base::hostNow();
    const auto drawn = m_pictures.with(
        [](Pictures& pictures) { return std::exchange(pictures.drawn, std::nullopt); });
    if (drawn && m_watcher != nullptr)
        m_watcher->pictureShown(*drawn, now);
}

} // namespace vantro::ui
