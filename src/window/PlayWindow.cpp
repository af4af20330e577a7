#include "window/PlayWindow.h"

#include "editor/EditorPreview.h"
#include "window/QmlModule.h"

#include <QQuickWindow>

namespace vantro::window {

PlayWindow::PlayWindow(editor::EditorPreview& preview) {
    prepareEngine(m_engine);
    m_window = makeWindow(m_engine, QStringLiteral("PlayWindow.qml"),
                          {{QStringLiteral("player"), QVariant::fromValue(&preview)}});
}

PlayWindow::~PlayWindow() = default;

} // namespace vantro::window
