#include "model/json/JsonFault.h"

namespace vantro::model::json {

void JsonFault::addKey(std::string_view key) {
    const bool needsDot = !m_path.empty() && !m_path.starts_with('[');
    m_path = std::string(key) + (needsDot ? "." : "") + m_path;
}

void JsonFault::addIndex(std::size_t index) {
    const bool needsDot = !m_path.empty() && !m_path.starts_with('[');
    m_path = "[" + std::to_string(index) + "]" + (needsDot ? "." : "") + m_path;
}

std::string JsonFault::description() const {
    return m_path.empty() ? m_problem : m_path + ": " + m_problem;
}

} // namespace vantro::model::json
