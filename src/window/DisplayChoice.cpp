#include "window/DisplayChoice.h"

#include "app/state/AppState.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace vantro::window {

DisplayChoice::DisplayChoice(app::AppState& state, Lister lister)
    : m_state(state), m_lister(std::move(lister)) {
    connect(&state, &app::AppState::selectedDisplayIDChanged, this, &DisplayChoice::changed);
    for (const auto signal : {&QGuiApplication::screenAdded, &QGuiApplication::screenRemoved,
                              &QGuiApplication::primaryScreenChanged})
        connect(qGuiApp, signal, this, &DisplayChoice::refresh, Qt::QueuedConnection);
    refresh();
}

void DisplayChoice::refresh() {
    m_displays = m_lister();
    Q_EMIT changed();
}

QStringList DisplayChoice::names() const {
    QStringList names;
    for (const auto& display : m_displays)
        names.append(tr("%1 (%2 x %3)")
                         .arg(QString::fromStdString(display.name))
                         .arg(display.frame.width * display.backingScaleFactor)
                         .arg(display.frame.height * display.backingScaleFactor));
    return names;
}

int DisplayChoice::current() const {
    const auto chosen = std::ranges::find(m_displays, m_state.selectedDisplayID(),
                                          &capture::ShareableDisplay::displayID);
    return chosen == m_displays.end() ? 0 : static_cast<int>(chosen - m_displays.begin());
}

void DisplayChoice::setCurrent(int index) {
    if (index >= 0 && index < static_cast<int>(m_displays.size()))
        m_state.setSelectedDisplayID(m_displays[static_cast<std::size_t>(index)].displayID);
}

} // namespace vantro::window
