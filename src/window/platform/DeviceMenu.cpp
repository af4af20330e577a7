#include "window/platform/DeviceMenu.h"

#include "window/devices/DeviceChoice.h"

#include <QMenu>

namespace vantro::window {
namespace {

/// A name may hold what marks a key in menus.
QString plain(QString name) {
    return name.replace(u'&', QStringLiteral("&&"));
}

void fill(QMenu& menu, devices::DeviceChoice& choice) {
    menu.clear();
    const auto names = choice.names();
    for (int row = 0; row < names.size(); ++row) {
        auto* action = menu.addAction(plain(names[row]));
        action->setCheckable(true);
        action->setChecked(row == choice.current());
        QObject::connect(action, &QAction::triggered, &choice,
                         [&choice, row] { choice.choose(row); });
        if (row == 0)
            menu.addSeparator();
    }
}

} // namespace

void showDeviceMenu(devices::DeviceChoice& choice, QPoint globalPosition) {
    auto* menu = new QMenu;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fill(*menu, choice);
    // Later: it may be one of the menu's own actions that changes the choice.
    QObject::connect(
        &choice, &devices::DeviceChoice::changed, menu, [menu, &choice] { fill(*menu, choice); },
        Qt::QueuedConnection);
    menu->popup(globalPosition);
}

} // namespace vantro::window
