#pragma once

#include "ui/PictureStream.h"

#include <QPointer>
#include <QQuickItem>

#include <QtQml/qqmlregistration.h>

namespace vantro::ui {

/// Shows the newest picture of a stream in its middle, a pixel of it on a pixel of the screen, and
/// tells the stream how many there are. Only a picture that was made for another size is stretched
/// or squeezed, until the next one comes.
class PreviewItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(vantro::ui::PictureStream* stream READ stream WRITE setStream NOTIFY streamChanged)

  public:
    PreviewItem();
    ~PreviewItem() override;

    PictureStream* stream() const { return m_stream; }
    void setStream(PictureStream* stream);

  Q_SIGNALS:
    void streamChanged();

  protected:
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

  private:
    void followWindow(QQuickWindow* window);
    void tellArea();
    QRectF rectOf(QSize picture) const;

    QPointer<PictureStream> m_stream;
    QMetaObject::Connection m_swaps;
    /// Of the picture in the scene graph; the thread that draws.
    std::shared_ptr<const media::PixelBuffer> m_pixels;
};

} // namespace vantro::ui
