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
                     std::function<void()> importMovie, std::function<void()> setUpKeys) {
    auto* menu = new QMenu;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(menu->addAction(QObject::tr("Open Movie…")), &QAction::triggered,
                     std::move(importMovie));
    menu->addSeparator();
    auto* countdown = menu->addAction(QObject::tr("Count Down Before Recording"));
    countdown->setCheckable(true);
    countdown->setChecked(preferences.countdown());
    QObject::connect(countdown, &QAction::toggled, &preferences, &ui::Preferences::setCountdown);
    QObject::connect(menu->addAction(QObject::tr("Set Up Global Keys…")), &QAction::triggered,
                     std::move(setUpKeys));
    addThemes(*menu, preferences);
    menu->popup(globalPosition);
}

} // namespace vantro::window
