#pragma once

#include <algorithm>

namespace vantro::render {

/// A half-open range of pixel indices.
struct PixelSpan {
    int begin = 0;
    int end = 0;

    int length() const { return end - begin; }
    bool isEmpty() const { return begin >= end; }
    PixelSpan clippedTo(PixelSpan other) const {
        const int first = std::max(begin, other.begin);
        return {first, std::max(first, std::min(end, other.end))};
    }
    /// The smallest span that holds both; empty ones count for nothing.
    PixelSpan joinedWith(PixelSpan other) const {
        if (isEmpty() || other.isEmpty())
            return isEmpty() ? other : *this;
        return {std::min(begin, other.begin), std::max(end, other.end)};
    }
};

/// `value` as an index within [low, high]; what is not a number becomes `low`.
inline int clampedIndex(double value, int low, int high) {
    return value > low ? static_cast<int>(std::min<double>(value, high)) : low;
}

} // namespace vantro::render
