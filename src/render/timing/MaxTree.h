#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <limits>
#include <span>
#include <vector>

namespace vantro::render {

/// Answers questions about the greatest values in a fixed row of numbers in logarithmic time.
/// Immutable after construction. The values must not be NaN.
template <typename Value>
class MaxTree {
  public:
    MaxTree() = default;
    explicit MaxTree(std::span<const Value> values)
        : m_leaves(std::bit_ceil(std::max<std::size_t>(values.size(), 1)))
        , m_nodes(2 * m_leaves, std::numeric_limits<Value>::lowest()) {
        std::ranges::copy(values, m_nodes.begin() + static_cast<std::ptrdiff_t>(m_leaves));
        for (auto node = m_leaves - 1; node > 0; --node)
            m_nodes[node] = std::max(m_nodes[2 * node], m_nodes[2 * node + 1]);
    }

    /// The greatest value at the positions from `first` to before `last`, which are not none.
    Value max(std::size_t first, std::size_t last) const {
        auto result = std::numeric_limits<Value>::lowest();
        for (first += m_leaves, last += m_leaves; first < last; first /= 2, last /= 2) {
            if (first % 2 == 1)
                result = std::max(result, m_nodes[first++]);
            if (last % 2 == 1)
                result = std::max(result, m_nodes[--last]);
        }
        return result;
    }

    /// Calls `function(position)` for each position before `last` whose value is at least `limit`.
    template <typename Function>
    void forEachAtLeast(Value limit, std::size_t last, Function&& function) const {
        if (!m_nodes.empty())
            visit(1, 0, m_leaves, limit, last, function);
    }

  private:
    template <typename Function>
    void visit(std::size_t node, std::size_t first, std::size_t width, Value limit,
               std::size_t last, Function& function) const {
        if (first >= last || m_nodes[node] < limit)
            return;
        if (width == 1) {
            function(first);
            return;
        }
        visit(2 * node, first, width / 2, limit, last, function);
        visit(2 * node + 1, first + width / 2, width / 2, limit, last, function);
    }

    std::size_t m_leaves = 0;
    std::vector<Value> m_nodes; ///< node n has the children 2n and 2n + 1; the leaves come last
};

} // namespace vantro::render
