#include "model/json/JsonWriter.h"

#include "model/json/JsonFault.h"

#include <array>
#include <charconv>
#include <cmath>

#include <nlohmann/json.hpp>

namespace vantro::model::json {

void JsonWriter::key(std::string_view name) {
    plainString(name);
    m_text += m_style == Style::pretty ? ": " : ":";
    m_afterKey = true;
}

void JsonWriter::boolean(bool value) {
    beginValue();
    m_text += value ? "true" : "false";
}

void JsonWriter::integer(std::int64_t value) {
    beginValue();
    m_text += std::to_string(value);
}

void JsonWriter::number(double value) {
    if (!std::isfinite(value))
        throw JsonFault("not a finite number, which cannot be saved");
    beginValue();
    std::array<char, 32> digits; // the longest takes 24 characters
    const auto result = std::to_chars(digits.begin(), digits.end(), value);
    m_text.append(digits.begin(), result.ptr);
    if (value == 0 && std::signbit(value))
        m_text += ".0"; // "-0" alone is the integer, which has no sign
}

void JsonWriter::string(std::string_view value) {
    beginValue();
    m_text += nlohmann::json(value).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void JsonWriter::plainString(std::string_view value) {
    beginValue();
    m_text += '"';
    m_text += value;
    m_text += '"';
}

void JsonWriter::open(char bracket) {
    beginValue();
    m_text += bracket;
    ++m_depth;
    m_isFirst = true;
}

void JsonWriter::close(char bracket) {
    --m_depth;
    if (!m_isFirst)
        newLine();
    m_text += bracket;
    m_isFirst = false;
}

void JsonWriter::beginValue() {
    if (std::exchange(m_afterKey, false))
        return;
    if (!m_isFirst)
        m_text += ',';
    m_isFirst = false;
    if (m_depth > 0)
        newLine();
}

void JsonWriter::newLine() {
    if (m_style == Style::compact)
        return;
    constexpr std::size_t indent = 2;
    m_text += '\n';
    m_text.append(m_depth * indent, ' ');
}

} // namespace vantro::model::json
