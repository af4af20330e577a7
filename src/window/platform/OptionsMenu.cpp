#include "window/platform/OptionsMenu.h"

#include "ui/Preferences.h"

#include <QMenu>

namespace vantro::window {
namespace {

void addThemes(QMenu& menu, ui::Preferences& preferences) {
    auto* themes = menu.addMenu(QObject::tr("Appearance"));
    for (const auto& [choice, label] :
         {std::pair{ui::ThemeChoice::system, QObject::tr("Follow the Desktop")},
          std::pair{ui::ThemeChoice::light, QObject::tr("Light")},
          std::pair{ui::ThemeChoice::dark, QObject::tr("Dark")}}) {
        auto* action = themes->addAction(label);
        action->setCheckable(true);
        action->setChecked(preferences.theme() == choice);
        QObject::connect(action, &QAction::triggered, &preferences,
                         [&preferences, choice = choice] { preferences.setTheme(choice); });
    }
}

} // namespace

void showOptionsMenu(ui::Preferences& preferences, QPoint globalPosition,
                     std::function<void()> importMovie, std::function<void()> showSettings) {
    auto* menu = new QMenu;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(menu->addAction(QObject::tr("Open Movie…")), &QAction::triggered,
                     std::move(importMovie));
    menu->addSeparator();
    auto* settings = menu->addAction(QObject::tr("Settings…"));
    settings->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    QObject::connect(settings, &QAction::triggered, std::move(showSettings));
    addThemes(*menu, preferences);
    menu->popup(globalPosition);
}

} // namespace vantro::window
