#pragma once

#include <QQuickImageProvider>
#include <filesystem>

namespace vantro::editor::sidebar {

/// What a preview is read at; it is shown smaller.
inline constexpr QSize previewSize(112, 72);

/// Pictures of any format that a background may have, small, as images of QML: read on the image
/// loader's thread. Those that cannot be read are clear.
class PicturePreviews : public QQuickImageProvider {
  public:
    PicturePreviews() : QQuickImageProvider(Image, ForceAsynchronousImageLoading) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

/// The picture's address in QML; the provider is named "picture".
QString previewSource(const std::filesystem::path& picture);

} // namespace vantro::editor::sidebar
