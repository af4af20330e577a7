#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vantro::model::json {

/// Writes one JSON text from front to back into a string. The caller nests begin and end rightly
/// and writes a key before each member's value.
class JsonWriter {
  public:
    enum class Style {
        compact, ///< no white space; members in the order in which they are declared
        pretty,  ///< a line for each value, indented; the caller gives members sorted by key
    };

    explicit JsonWriter(Style style) : m_style(style) {}

    Style style() const { return m_style; }

    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginArray() { open('['); }
    void endArray() { close(']'); }
    void key(std::string_view name);
    void boolean(bool value);
    void integer(std::int64_t value);
    /// The shortest text that reads back as the same number. Throws JsonFault for what JSON has no
    /// numbers for (infinite, not a number).
    void number(double value);
    /// Bytes that are not UTF-8 become replacement characters.
    void string(std::string_view value);
    /// A string that needs no escapes.
    void plainString(std::string_view value);

    std::string take() { return std::move(m_text); }

  private:
    void open(char bracket);
    void close(char bracket);
    void beginValue();
    void newLine();

    Style m_style;
    std::string m_text;
    std::size_t m_depth = 0;
    bool m_isFirst = true;   ///< nothing stands in the current container yet
    bool m_afterKey = false; ///< the next value belongs to the key just written
};

} // namespace vantro::model::json
