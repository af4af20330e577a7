#pragma once

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace vantro::test {

/// Variables of this process that are as they were when it goes. One thread.
class Environment {
  public:
    Environment() = default;
    ~Environment() {
        for (const auto& [name, value] : m_before)
            put(name, value);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

    /// An empty value removes the variable.
    void set(const std::string& name, const std::string& value) {
        const char* before = std::getenv(name.c_str()); // NOLINT(concurrency-mt-unsafe)
        m_before.insert(m_before.begin(), {name, before != nullptr ? before : ""});
        put(name, value);
    }

  private:
    static void put(const std::string& name, const std::string& value) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe)
        value.empty() ? ::unsetenv(name.c_str()) : ::setenv(name.c_str(), value.c_str(), 1);
    }

    std::vector<std::pair<std::string, std::string>> m_before; ///< the last first
};

} // namespace vantro::test
