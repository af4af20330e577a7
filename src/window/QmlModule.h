#pragma once

#include <QQmlEngine>
#include <QVariantMap>
#include <memory>

class QQuickWindow;

namespace vantro::window {

/// Makes our QML modules and symbols known to an engine. Main thread.
void prepareEngine(QQmlEngine& engine);

/// The window that a file of our module describes, with its required properties set. A file that
/// cannot be loaded is fatal. Main thread; the engine outlives it.
std::unique_ptr<QQuickWindow> makeWindow(QQmlEngine& engine, const QString& file,
                                         const QVariantMap& properties);

} // namespace vantro::window
