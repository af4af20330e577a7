#include "window/platform/WindowPlacement.h"

#include "app/state/AppState.h"
#include "ui/Preferences.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <algorithm>

namespace vantro::window {
namespace {

constexpr int cornerMargin = 24;

bool isOnAScreen(QPoint position) {
    return QGuiApplication::screenAt(position + QPoint(cornerMargin, cornerMargin)) != nullptr;
}

} // namespace

WindowPlacement::WindowPlacement(QWindow& window, app::AppState& state,
                                 ui::Preferences& preferences)
    : m_window(window), m_state(state), m_preferences(preferences) {
    connect(&state, &app::AppState::phaseChanged, this, [this] { phaseChanged(); });
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
    const auto phase = m_state.phase().kind;
    const bool aside = phase == app::AppPhase::Kind::recording;
    const bool large =
        phase == app::AppPhase::Kind::previewing || phase == app::AppPhase::Kind::exporting;
    const bool hasGrown = large && !m_isLarge;
    const bool comesBack = m_isAside && !aside;
    m_isLarge = large;
    if (aside && !m_isAside) {
        m_home = m_window.framePosition();
        m_isAside = true;
        stepAside();
    } else if (hasGrown || comesBack) {
        m_isAside = false;
        goHome();
    }
}

/// Back to where the window stood, as far as its new size, which it has already, leaves it room.
void WindowPlacement::goHome() {
    const auto* screen = m_window.screen();
    if (screen == nullptr)
        return;
    const auto space = screen->availableGeometry();
    QRect frame(m_home.value_or(m_window.framePosition()),
                m_window.size().grownBy(m_window.frameMargins()));
    frame.moveRight(std::min(frame.right(), space.right()));
    frame.moveBottom(std::min(frame.bottom(), space.bottom()));
    frame.moveLeft(std::max(frame.left(), space.left()));
    frame.moveTop(std::max(frame.top(), space.top()));
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

} // namespace vantro::window
