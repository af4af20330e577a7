#include "window/platform/WindowPlacement.h"

#include "app/state/AppState.h"
#include "ui/Preferences.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <algorithm>

namespace vantro::window {
namespace {

using namespace std::chrono_literals;

constexpr int cornerMargin = 24;
/// A window that is maximized tells of its size and its state one after the other.
constexpr auto settlingTime = 200ms;

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
    for (const auto changed : {&QWindow::widthChanged, &QWindow::heightChanged})
        connect(&window, changed, this, [this] {
            if (m_isLarge)
                m_sizeSettles.start();
        });
    connect(&window, &QWindow::windowStateChanged, this, [this] {
        if (m_isLarge)
            m_sizeSettles.start();
    });
    m_sizeSettles.setSingleShot(true);
    m_sizeSettles.setInterval(settlingTime);
    connect(&m_sizeSettles, &QTimer::timeout, this, &WindowPlacement::noteEditorSize);
}

bool WindowPlacement::isMaximized() const {
    return m_window.windowStates().testFlag(Qt::WindowMaximized);
}

void WindowPlacement::noteEditorSize() {
    if (!m_isLarge)
        return;
    m_preferences.setEditorMaximized(isMaximized());
    if (!isMaximized())
        m_preferences.setEditorSize(m_window.size());
}

void WindowPlacement::restoreEditorSize() {
    const auto* screen = m_window.screen();
    if (const auto size = m_preferences.editorSize(); size && screen != nullptr)
        m_window.resize(
            size->boundedTo(screen->availableSize()).expandedTo(m_window.minimumSize()));
    if (m_preferences.editorMaximized())
        m_window.showMaximized();
}

void WindowPlacement::restore() {
    if (const auto position = m_preferences.windowPosition(); position && isOnAScreen(*position))
        m_window.setFramePosition(*position);
}

void WindowPlacement::remember() {
    if (m_sizeSettles.isActive())
        noteEditorSize();
    if (m_home)
        m_preferences.setWindowPosition(*m_home);
}

void WindowPlacement::noteHome() {
    // Not read at the end: a window that has been closed no longer knows its frame.
    if (m_window.isVisible() && !m_isAside && !isMaximized())
        m_home = m_window.framePosition();
}

void WindowPlacement::phaseChanged() {
    const auto phase = m_state.phase().kind;
    const bool aside = phase == app::AppPhase::Kind::recording;
    const bool large =
        phase == app::AppPhase::Kind::previewing || phase == app::AppPhase::Kind::exporting;
    const bool hasGrown = large && !m_isLarge;
    const bool comesBack = m_isAside && !aside;
    if (hasGrown)
        restoreEditorSize();
    m_isLarge = large;
    if (aside && !m_isAside) {
        m_home = m_window.framePosition();
        m_isAside = true;
        stepAside();
    } else if (hasGrown || comesBack) {
        m_isAside = false;
        goHome();
        if (comesBack)
            comeToFront();
    }
}

/// What was recorded is to be looked at now, also when another program has the keyboard: the
/// recording may have been stopped by a key from anywhere or from the tray.
void WindowPlacement::comeToFront() {
    if (!m_window.isVisible())
        return;
    m_window.setWindowStates(m_window.windowStates() & ~Qt::WindowMinimized);
    m_window.raise();
    m_window.requestActivate();
}

/// Back to where the window stood, as far as its new size, which it has already, leaves it room.
void WindowPlacement::goHome() {
    const auto* screen = m_window.screen();
    if (screen == nullptr || isMaximized())
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
