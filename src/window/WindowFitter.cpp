#include "window/WindowFitter.h"

#include <cmath>

namespace vantro::window {
namespace {

constexpr QSize anySize(16'777'215, 16'777'215); // the largest that Qt knows

QSize wholeUnits(QSizeF size) {
    return {static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height()))};
}

} // namespace

void WindowFitter::setWindow(QQuickWindow* window) {
    m_window = window;
    fit();
}

void WindowFitter::setWanted(QSizeF wanted) {
    m_wanted = wanted;
    fit();
}

void WindowFitter::setResizable(bool resizable) {
    m_resizable = resizable;
    fit();
}

void WindowFitter::setSmallest(QSizeF smallest) {
    m_smallest = smallest;
    fit();
}

void WindowFitter::fit() {
    Q_EMIT changed();
    const auto size = wholeUnits(m_wanted);
    if (m_window == nullptr || size.isEmpty())
        return;
    // What is small by nature does not fill the screen because what stood here before did.
    if (!m_resizable && (m_window->windowStates() & (Qt::WindowMaximized | Qt::WindowFullScreen)))
        m_window->showNormal();
    m_window->setMinimumSize(m_resizable ? wholeUnits(m_smallest).boundedTo(size) : size);
    m_window->setMaximumSize(m_resizable ? anySize : size);
    const auto fitted = m_resizable ? m_window->size().expandedTo(size) : size;
    if (m_window->size() != fitted)
        m_window->resize(fitted);
}

} // namespace vantro::window
