#pragma once

#include <QQuickImageProvider>

namespace vantro::ui {

/// Draws the program's symbols in any color: "image://symbol/NAME/RRGGBB", for example
/// "image://symbol/crop/1a1a1a", at the requested size. Any thread.
class SymbolProvider : public QQuickImageProvider {
  public:
    SymbolProvider() : QQuickImageProvider(Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

/// One symbol in one color, `pixels` high and wide; null when there is none of that name.
QImage drawSymbol(const QString& name, const QColor& color, int pixels);

} // namespace vantro::ui
