#include "window/picker/ApplicationIcons.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QPainter>
#include <QStandardPaths>
#include <QUrl>

namespace vantro::window::picker {
namespace {

constexpr int sizeWhenNotAsked = 32;

/// A rounded tile in a color that the name picks, with its initial.
QPixmap initialTile(const QString& name, int pixels) {
    QPixmap tile(pixels, pixels);
    tile.fill(Qt::transparent);
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    constexpr int hues = 360;
    painter.setBrush(QColor::fromHsv(static_cast<int>(qHash(name) % hues), 90, 150));
    const double inset = pixels / 16.0;
    painter.drawRoundedRect(QRectF(tile.rect()).adjusted(inset, inset, -inset, -inset),
                            pixels / 5.0, pixels / 5.0);
    auto font = painter.font();
    font.setPixelSize(pixels / 2);
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(tile.rect(), Qt::AlignCenter, name.left(1).toUpper());
    return tile;
}

QPixmap pixmapOf(const capture::WindowIcon& icon) {
    const QImage view(reinterpret_cast<const uchar*>(icon.pixels.data()), icon.width, icon.height,
                      QImage::Format_ARGB32_Premultiplied);
    return QPixmap::fromImage(view); // copies
}

} // namespace

void ApplicationIcons::readDesktopEntry(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    QString icon;
    QString windowClass;
    bool inEntry = false;
    while (!file.atEnd()) {
        const auto line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.startsWith(u'['))
            inEntry = line == QStringLiteral("[Desktop Entry]");
        else if (inEntry && line.startsWith(QStringLiteral("Icon=")))
            icon = line.section(u'=', 1);
        else if (inEntry && line.startsWith(QStringLiteral("StartupWMClass=")))
            windowClass = line.section(u'=', 1).toLower();
    }
    if (icon.isEmpty())
        return;
    m_iconNames.insert(QFileInfo(path).completeBaseName().toLower(), icon);
    if (!windowClass.isEmpty())
        m_iconNames.insert(windowClass, icon);
}

void ApplicationIcons::readDesktopEntries() {
    m_entriesRead = true;
    auto folders = QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    std::ranges::reverse(folders); // the user's own come last and win
    for (const auto& folder : folders)
        for (QDirIterator entry(folder, {QStringLiteral("*.desktop")}, QDir::Files,
                                QDirIterator::Subdirectories);
             entry.hasNext();)
            readDesktopEntry(entry.next());
}

QPixmap ApplicationIcons::desktopIcon(const QString& bundle, int pixels) {
    if (!m_entriesRead)
        readDesktopEntries();
    const auto name = m_iconNames.value(bundle.toLower(), bundle.toLower());
    const auto icon = QFileInfo(name).isAbsolute() ? QIcon(name) : QIcon::fromTheme(name);
    return icon.pixmap(QSize(pixels, pixels), 1.0);
}

QPixmap ApplicationIcons::requestPixmap(const QString& id, QSize* size,
                                        const QSize& requestedSize) {
    const int pixels = requestedSize.isEmpty() ? sizeWhenNotAsked : requestedSize.height();
    const auto part = [&id](int index) {
        return QUrl::fromPercentEncoding(id.section(u'/', index, index).toUtf8());
    };
    const auto bundle = QFileInfo(part(0)).fileName();
    const auto own = part(2).isEmpty() ? nullptr : m_windowIcons(part(2));
    const auto pixmap = own ? pixmapOf(*own) : desktopIcon(bundle, pixels);
    *size = {pixels, pixels};
    return pixmap.isNull()
               ? initialTile(part(1).isEmpty() ? bundle : part(1), pixels)
               : pixmap.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace vantro::window::picker
