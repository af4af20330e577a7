#include "editor/sidebar/PicturePreviews.h"

#include "base/Log.h"
#include "media/PictureFile.h"

namespace vantro::editor::sidebar {

QString previewSource(const std::filesystem::path& picture) {
    // In letters that an address leaves as they are.
    const auto id = QByteArray::fromStdString(picture.string())
                        .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
    return QStringLiteral("image://picture/") + QString::fromLatin1(id);
}

QImage PicturePreviews::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const auto path =
        QByteArray::fromBase64(id.toLatin1(), QByteArray::Base64UrlEncoding).toStdString();
    const auto wanted = requestedSize.isEmpty() ? previewSize : requestedSize;
    try {
        const auto pixels =
            media::readPicture(path, {.width = wanted.width(), .height = wanted.height()});
        const QImage whole(pixels->plane(0), pixels->width(), pixels->height(), pixels->stride(0),
                           QImage::Format_ARGB32_Premultiplied);
        auto preview =
            whole.scaled(wanted, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
        if (preview.size() == whole.size())
            preview = whole.copy(); // else it would share the pixels
        *size = preview.size();
        return preview;
    } catch (const std::exception& failure) {
        base::logInfo("{}", failure.what());
        QImage nothing(1, 1, QImage::Format_ARGB32_Premultiplied);
        nothing.fill(Qt::transparent);
        *size = nothing.size();
        return nothing;
    }
}

} // namespace vantro::editor::sidebar
