#include "ui/platform/FileManager.h"

#include "base/Log.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QProcess>
#include <QStringList>
#include <QUrl>

namespace vantro::ui {

FileManager::FileManager(QDBusConnection bus, OpenFolder openFolder)
    : m_bus(std::move(bus)), m_openFolder(std::move(openFolder)) {}

void FileManager::show(const QString& file) {
    const auto folder = QFileInfo(file).absolutePath();
    const auto name = QStringLiteral("org.freedesktop.FileManager1");
    auto request = QDBusMessage::createMethodCall(
        name, QStringLiteral("/org/freedesktop/FileManager1"), name, QStringLiteral("ShowItems"));
    request << QStringList{QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded)} << QString();
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(request), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, folder] {
        watcher->deleteLater();
        if (watcher->isError())
            m_openFolder(folder);
    });
}

void FileManager::withXdgOpen(const QString& folder) {
    if (!QProcess::startDetached(QStringLiteral("xdg-open"), {folder}))
        base::logWarning("No file manager opens {}", folder.toStdString());
}

} // namespace vantro::ui
