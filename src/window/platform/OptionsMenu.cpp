#include "window/platform/OptionsMenu.h"

#include <QMenu>

namespace vantro::window {

void showOptionsMenu(QPoint globalPosition, std::function<void()> importMovie,
                     std::function<void()> showSettings) {
    auto* menu = new QMenu;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(menu->addAction(QObject::tr("Open Movie…")), &QAction::triggered,
                     std::move(importMovie));
    auto* settings = menu->addAction(QObject::tr("Settings…"));
    settings->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    QObject::connect(settings, &QAction::triggered, std::move(showSettings));
    menu->popup(globalPosition);
}

} // namespace vantro::window
