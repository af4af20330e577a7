#include "window/start/RecordingPictures.h"

namespace vantro::window::start {

QPixmap RecordingPictures::requestPixmap(const QString& id, QSize* size, const QSize&) {
    for (const auto& listed : m_recovery.recordings()) {
        if (listed.recording.movie.parent_path().filename() != id.toStdString() ||
            !listed.details || !listed.details->picture)
            continue;
        const auto& picture = *listed.details->picture;
        *size = {picture.width(), picture.height()};
        return QPixmap::fromImage(QImage(picture.plane(0), picture.width(), picture.height(),
                                         picture.stride(0), QImage::Format_RGB32)); // copies
    }
    return {};
}

} // namespace vantro::window::start
