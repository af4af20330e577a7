#pragma once

#include <QPoint>
#include <functional>

namespace vantro::ui {
class Preferences;
} // namespace vantro::ui

namespace vantro::window {

/// Shows the menu with what is not needed every day: recent projects, countdown, theme. A native
/// menu, since the window may be smaller than it. `open` is called with a chosen project's path.
/// Main thread.
void showOptionsMenu(ui::Preferences& preferences, QPoint globalPosition,
                     const std::function<void(const QString&)>& open);

} // namespace vantro::window
