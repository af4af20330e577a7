#include "window/overlay/SelectionGeometry.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace vantro::window::overlay {
namespace {

double evenBelow(double value) {
    return 2 * std::floor(value / 2);
}

} // namespace

void SelectionGeometry::press(model::Point at) {
    m_origin = at;
    m_currentRect = {};
    m_dragging = true;
}

void SelectionGeometry::drag(model::Point to) {
    if (!m_dragging || !m_origin)
        return;
    m_currentRect = {.x = std::min(to.x, m_origin->x),
                     .y = std::min(to.y, m_origin->y),
                     .width = std::abs(to.x - m_origin->x),
                     .height = std::abs(to.y - m_origin->y)};
}

std::optional<model::Rect> SelectionGeometry::release() {
    m_dragging = false;
    if (m_currentRect.width > smallest && m_currentRect.height > smallest)
        return model::Rect{.x = m_currentRect.x,
                           .y = m_currentRect.y,
                           .width = evenBelow(m_currentRect.width),
                           .height = evenBelow(m_currentRect.height)};
    m_origin.reset();
    m_currentRect = {};
    return {};
}

std::string SelectionGeometry::label() const {
    return fmt::format("{} x {}", static_cast<long>(m_currentRect.width),
                       static_cast<long>(m_currentRect.height));
}

} // namespace vantro::window::overlay
