#include "editor/platform/WindowPlacement.h"

#include "app/state/AppState.h"
#include "editor/Preferences.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace vantro {
namespace {

constexpr int cornerMargin = 24;

bool isOnAScreen(QPoint position) {
    return QGuiApplication::screenAt(position + QPoint(cornerMargin, cornerMargin)) != nullptr;
}

} // namespace

WindowPlacement::WindowPlacement(QWindow& window, AppState& state, Preferences& preferences)
    : m_window(window), m_state(state), m_preferences(preferences) {
    connect(&state, &AppState::phaseChanged, this, [this] { phaseChanged(); });
    connect(&window, &QWindow::widthChanged, this, [this] {
        if (m_isAside)
            stepAside();
    });
}

void WindowPlacement::restore() {
    if (const auto position = m_preferences.windowPosition(); position && isOnAScreen(*position))
        m_window.setFramePosition(*position);
}

void WindowPlacement::remember() {
    m_preferences.setWindowPosition(m_isAside ? m_home : m_window.framePosition());
}

void WindowPlacement::phaseChanged() {
    const bool aside = m_state.phase() == AppPhase::recording();
    if (aside == m_isAside)
        return;
    if (aside) {
        m_home = m_window.framePosition();
        m_isAside = true;
        stepAside();
    } else {
        m_isAside = false;
        m_window.setFramePosition(m_home);
    }
}

void WindowPlacement::stepAside() {
    const auto* screen = m_window.screen();
    if (screen == nullptr)
        return;
    const auto space = screen->availableGeometry();
    const auto frame = m_window.frameMargins();
    m_window.setFramePosition(
        {space.right() - m_window.width() - frame.left() - frame.right() - cornerMargin,
         space.top() + cornerMargin});
}

} // namespace vantro
