#include "window/platform/HiddenWindows.h"

#include "app/flows/RecordingFlow.h"

#include <QGuiApplication>
#include <utility>

namespace vantro::window {

HiddenWindows::HiddenWindows(app::flows::RecordingFlow& flow) : m_flow(flow) {
    connect(&flow, &app::flows::RecordingFlow::windowsHiddenChanged, this, &HiddenWindows::update);
}

void HiddenWindows::update() {
    if (!m_flow.areWindowsHidden()) {
        for (const auto& window : std::exchange(m_hidden, {}))
            if (window)
                window->setVisible(true); // maximized where it was so
        return;
    }
    for (auto* window : QGuiApplication::topLevelWindows())
        if (window->isVisible() && (window->type() & Qt::WindowType_Mask) != Qt::Popup) {
            m_hidden.append(window);
            window->setVisible(false);
        }
}

} // namespace vantro::window
