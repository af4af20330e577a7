#include "window/overlay/SelectionGeometry.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>
#include <vector>

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
    if (const auto area = finished())
        return area;
    m_origin.reset();
    m_currentRect = {};
    return {};
}

std::optional<model::Rect> SelectionGeometry::finished() const {
    if (m_currentRect.width > smallest && m_currentRect.height > smallest)
        return model::Rect{.x = m_currentRect.x,
                           .y = m_currentRect.y,
                           .width = evenBelow(m_currentRect.width),
                           .height = evenBelow(m_currentRect.height)};
    return {};
}

void SelectionGeometry::select(const model::Rect& rect) {
    const double left = std::clamp(rect.x, 0.0, m_bounds.width);
    const double top = std::clamp(rect.y, 0.0, m_bounds.height);
    const double right = std::clamp(rect.x + rect.width, left, m_bounds.width);
    const double bottom = std::clamp(rect.y + rect.height, top, m_bounds.height);
    if (right - left > smallest && bottom - top > smallest)
        m_currentRect = {.x = left, .y = top, .width = right - left, .height = bottom - top};
}

void SelectionGeometry::moveBy(double x, double y) {
    if (!hasArea())
        return;
    auto moved = m_currentRect;
    moved.x = std::clamp(moved.x + x, 0.0, std::max(m_bounds.width - moved.width, 0.0));
    moved.y = std::clamp(moved.y + y, 0.0, std::max(m_bounds.height - moved.height, 0.0));
    select(moved);
}

void SelectionGeometry::growBy(double width, double height) {
    if (!hasArea())
        return;
    auto grown = m_currentRect;
    grown.width = std::max(grown.width + width, smallest + 1);
    grown.height = std::max(grown.height + height, smallest + 1);
    select(grown);
}

void SelectionGeometry::type(const std::string& text) {
    std::vector<double> numbers;
    for (const char* at = text.data(); at < text.data() + text.size();) {
        int number = 0;
        const auto [next, error] = std::from_chars(at, text.data() + text.size(), number);
        if (error == std::errc())
            numbers.push_back(number);
        at = std::max(next, at + 1);
    }
    const auto numberOr = [&](std::size_t index, double other) {
        return index < numbers.size() ? numbers[index] : other;
    };
    model::Rect typed{.width = numberOr(0, m_currentRect.width),
                      .height = numberOr(1, m_currentRect.height)};
    typed.x =
        numberOr(2, hasArea() ? m_currentRect.x : std::floor((m_bounds.width - typed.width) / 2));
    typed.y =
        numberOr(3, hasArea() ? m_currentRect.y : std::floor((m_bounds.height - typed.height) / 2));
    select(typed);
}

std::string SelectionGeometry::label() const {
    return fmt::format("{} x {}", static_cast<long>(m_currentRect.width),
                       static_cast<long>(m_currentRect.height));
}

} // namespace vantro::window::overlay
