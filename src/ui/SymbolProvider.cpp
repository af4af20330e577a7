#include "ui/SymbolProvider.h"

#include "base/Log.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace vantro::ui {
namespace {

constexpr int sizeWhenNotAsked = 24;

} // namespace

QImage drawSymbol(const QString& name, const QColor& color, int pixels) {
    QFile file(QStringLiteral(":/qt/qml/Vantro/symbols/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly)) {
        base::logError("no symbol is named {}", name.toStdString());
        return {};
    }
    QSvgRenderer renderer(file.readAll());
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

QImage SymbolProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const int pixels = requestedSize.isEmpty() ? sizeWhenNotAsked : requestedSize.height();
    *size = {pixels, pixels};
    const auto color = QColor(u'#' + id.section(u'/', 1, 1));
    return drawSymbol(id.section(u'/', 0, 0), color, pixels);
}

} // namespace vantro::ui
