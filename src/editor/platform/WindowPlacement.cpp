#include "editor/platform/WindowPlacement.h"

#include "app/state/AppState.h"
#include "editor/Preferences.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <algorithm>

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
    connect(&window, &QWindow::xChanged, this, [this] { noteHome(); });
    connect(&window, &QWindow::yChanged, this, [this] { noteHome(); });
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
    if (m_home)
        m_preferences.setWindowPosition(*m_home);
}

void WindowPlacement::noteHome() {
    // Not read at the end: a window that has been closed no longer knows its frame.
    if (m_window.isVisible() && !m_isAside)
        m_home = m_window.framePosition();
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
        m_window.setFramePosition(*m_home);
        m_isAside = false;
        // The window takes its new size in the same turn of the event loop.
        QMetaObject::invokeMethod(this, [this] { moveOntoScreen(); }, Qt::QueuedConnection);
    }
}

void WindowPlacement::moveOntoScreen() {
    const auto* screen = m_window.screen();
    if (screen == nullptr || m_isAside)
        return;
    const auto space = screen->availableGeometry();
    auto frame = m_window.frameGeometry();
    frame.moveRight(std::min(frame.right(), space.right()));
    frame.moveBottom(std::min(frame.bottom(), space.bottom()));
    frame.moveLeft(std::max(frame.left(), space.left()));
    frame.moveTop(std::max(frame.top(), space.top()));
    if (frame.topLeft() != m_window.framePosition())
        m_window.setFramePosition(frame.topLeft());
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
