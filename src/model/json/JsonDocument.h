#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantro::model::json {

class JsonValue;

/// A JSON text taken apart: its values in one flat list, each container followed by its content.
/// A recording of hours holds millions of numbers, which as separate objects on the heap would
/// take several times the memory; and without recursion, nesting is bounded by memory only.
///
/// Owns copies of all strings. Immutable after parse(); values refer to it.
class JsonDocument {
  public:
    enum class Kind : std::uint8_t { null, boolean, integer, number, string, array, object };

    /// Throws JsonFault, with line and column, for what is not JSON.
    static JsonDocument parse(std::string_view text);

    JsonValue root() const;

  private:
    struct Slice { // of m_text
        std::uint32_t offset;
        std::uint32_t length;
    };
    struct Node {
        std::uint32_t key = 0; ///< in m_keys, for members of objects
        std::uint32_t end = 0; ///< index of the first node after this value and its content
        Kind kind = Kind::null;
        union {
            std::int64_t integer = 0; ///< also a Boolean's 0 or 1
            double number;
            Slice text;
        };
    };
    class Builder;
    friend class JsonValue;

    std::vector<Node> m_nodes;
    std::vector<std::string> m_keys; ///< each distinct key once
    std::string m_text;              ///< all string values, back to back
};

/// One value of a document, valid as long as that lives. Cheap to copy.
class JsonValue {
  public:
    using Kind = JsonDocument::Kind;

    Kind kind() const { return node().kind; }

    /// Nothing where the value is of another kind. A Boolean is no number.
    std::optional<bool> asBoolean() const;
    std::optional<double> asNumber() const;
    /// A whole number that fits, however it is written (60, 60.0, 6e1).
    std::optional<std::int64_t> asInteger() const;
    std::optional<std::string_view> asString() const;

    /// An object's member of this name, the last one where several have it.
    std::optional<JsonValue> member(std::string_view key) const;

    /// Calls `function(value)` for each element of a list or member of an object.
    template <typename Function>
    void forEach(Function&& function) const {
        for (auto index = m_index + 1; index < node().end; index = m_document->m_nodes[index].end)
            function(JsonValue(m_document, index));
    }

    /// The kind with its article: "a string".
    std::string_view kindName() const;

  private:
    friend class JsonDocument;
    JsonValue(const JsonDocument* document, std::uint32_t index)
        : m_document(document), m_index(index) {}
    const JsonDocument::Node& node() const { return m_document->m_nodes[m_index]; }

    const JsonDocument* m_document;
    std::uint32_t m_index;
};

} // namespace vantro::model::json
