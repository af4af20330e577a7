#pragma once

#include "capture/ShareableContent.h"

#include <QHash>
#include <QQuickImageProvider>
#include <functional>
#include <memory>

namespace vantro::window::picker {

/// Icons of applications: "image://application/BUNDLE/NAME/ICON", the first two percent-encoded.
/// That is the icon of the window, if it gives itself one; else the one that the desktop's entries
/// have for what the application calls its windows; else a tile with its initial. Main thread.
class ApplicationIcons : public QQuickImageProvider {
  public:
    /// Finds a window's own icon by its name; null when there is none.
    using WindowIcons = std::function<std::shared_ptr<const capture::WindowIcon>(const QString&)>;

    explicit ApplicationIcons(WindowIcons windowIcons)
        : QQuickImageProvider(Pixmap), m_windowIcons(std::move(windowIcons)) {}

    QPixmap requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) override;

  private:
    void readDesktopEntries();
    void readDesktopEntry(const QString& path);

    QPixmap desktopIcon(const QString& bundle, int pixels);

    WindowIcons m_windowIcons;
    bool m_entriesRead = false;
    QHash<QString, QString> m_iconNames; ///< by entry name and window class, in lower case
};

} // namespace vantro::window::picker
