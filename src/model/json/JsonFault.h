#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>

namespace vantro::model::json {

/// Something wrong with one value of a document. It starts with the problem alone; each enclosing
/// list or object that it passes through on its way out adds its part of the path in front.
class JsonFault : public std::exception {
  public:
    explicit JsonFault(std::string problem) : m_problem(std::move(problem)) {}

    void addKey(std::string_view key);
    void addIndex(std::size_t index);

    const char* what() const noexcept override { return m_problem.c_str(); }
    /// Path and problem: "metadata.clickEvents[3].x: expected a number, found a string".
    std::string description() const;

  private:
    std::string m_path; ///< for example metadata.clickEvents[3].x; empty for the document itself
    std::string m_problem;
};

} // namespace vantro::model::json
