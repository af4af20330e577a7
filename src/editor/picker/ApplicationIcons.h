#pragma once

#include <QHash>
#include <QQuickImageProvider>

namespace vantro {

/// Icons of applications: "image://application/BUNDLE/NAME", both percent-encoded. Looked up among
/// the desktop's entries by what an application calls its windows; one without an entry or an icon
/// gets a tile with its initial. Main thread.
class ApplicationIcons : public QQuickImageProvider {
  public:
    ApplicationIcons() : QQuickImageProvider(Pixmap) {}

    QPixmap requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) override;

  private:
    void readDesktopEntries();
    void readDesktopEntry(const QString& path);

    bool m_entriesRead = false;
    QHash<QString, QString> m_iconNames; ///< by entry name and window class, in lower case
};

} // namespace vantro
