#pragma once

#include <mutex>
#include <utility>

namespace vantro::base {

/// A value that can be reached only while its mutex is held.
/// `with` runs a short function under the lock; that function must not call out or wait.
template <typename Value>
class Guarded {
  public:
    Guarded() = default;
    explicit Guarded(Value value) : m_value(std::move(value)) {}

    template <typename Function>
    decltype(auto) with(Function&& function) {
        const std::lock_guard lock(m_mutex);
        return std::forward<Function>(function)(m_value);
    }
    template <typename Function>
    decltype(auto) with(Function&& function) const {
        const std::lock_guard lock(m_mutex);
        return std::forward<Function>(function)(m_value);
    }

  private:
    mutable std::mutex m_mutex;
    Value m_value{};
};

} // namespace vantro::base
