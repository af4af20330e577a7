#include "window/ChosenPictures.h"

#include "window/overlay/FrozenPicture.h"

namespace vantro::window {

QImage ChosenPictures::requestImage(const QString&, QSize* size, const QSize& requestedSize) {
    const auto& content = m_flow.preparation().chosenContent();
    if (!content || content->picture == nullptr)
        return {};
    const auto picture = overlay::imageOf(content->picture);
    *size = picture.size();
    return picture.scaled(requestedSize.isEmpty() ? picture.size() : requestedSize,
                          Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace vantro::window
