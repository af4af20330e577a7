#pragma once

#include <QColor>
#include <algorithm>
#include <cmath>

namespace vantro::test {

/// Relative luminance by WCAG 2, from 0 to 1.
inline double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// Contrast ratio by WCAG 2, from 1 to 21.
inline double contrast(const QColor& a, const QColor& b) {
    const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
    return (light + 0.05) / (dark + 0.05);
}

} // namespace vantro::test
