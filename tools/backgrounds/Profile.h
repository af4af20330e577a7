#pragma once

#include "backgrounds/Canvas.h"

#include <algorithm>
#include <vector>

namespace vantro::backgrounds {

/// A function of x alone, computed once for each column of a picture: outlines are looked up for
/// every pixel but differ only from column to column. Immutable.
class Profile {
  public:
    template <typename Function>
    Profile(const Frame& frame, const Function& function) : m_pixel(frame.pixel()) {
        m_values.reserve(static_cast<std::size_t>(frame.width));
        for (int column = 0; column < frame.width; ++column)
            m_values.push_back(function(frame.place(column, 0).x));
    }

    /// Straight lines between the columns, level beyond the picture's sides.
    float operator()(float x) const {
        const float last = static_cast<float>(m_values.size() - 1);
        const float position = clamp(x / m_pixel - 0.5F, 0, last);
        const auto index = static_cast<std::size_t>(position);
        const auto next = std::min(index + 1, m_values.size() - 1);
        return mix(m_values[index], m_values[next], position - static_cast<float>(index));
    }

    float slope(float x) const {
        return ((*this)(x + 2 * m_pixel) - (*this)(x - 2 * m_pixel)) / (4 * m_pixel);
    }

  private:
    float m_pixel;
    std::vector<float> m_values;
};

} // namespace vantro::backgrounds
