#include "model/json/JsonDocument.h"

#include "model/json/JsonFault.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>
#include <utility>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace vantro::model::json {
namespace {

constexpr auto noContainer = std::numeric_limits<std::uint32_t>::max();

/// `position` counts the characters that had been read, the one at fault included.
JsonFault syntaxFault(std::string_view text, std::size_t position, std::string_view reason) {
    const auto before = text.substr(0, std::min(position > 0 ? position - 1 : 0, text.size()));
    const auto line = 1 + std::ranges::count(before, '\n');
    const auto column = before.size() - (before.rfind('\n') + 1) + 1; // npos + 1 is 0
    return JsonFault(fmt::format("not valid JSON at line {}, column {}: {}", line, column, reason));
}

} // namespace

/// Receives the parser's events in the order of the text.
class JsonDocument::Builder : public nlohmann::json_sax<nlohmann::json> {
  public:
    Builder(JsonDocument& document, std::string_view text) : m_document(document), m_source(text) {}

    bool null() override { return add({.kind = Kind::null, .integer = 0}); }
    bool boolean(bool value) override { return add({.kind = Kind::boolean, .integer = value}); }
    bool number_integer(number_integer_t value) override {
        return add({.kind = Kind::integer, .integer = value});
    }
    bool number_unsigned(number_unsigned_t value) override {
        if (std::in_range<std::int64_t>(value))
            return number_integer(static_cast<std::int64_t>(value));
        return add({.kind = Kind::number, .number = static_cast<double>(value)});
    }
    bool number_float(number_float_t value, const string_t& /*text*/) override {
        return add({.kind = Kind::number, .number = value});
    }
    bool string(string_t& value) override {
        const Slice slice{.offset = static_cast<std::uint32_t>(m_document.m_text.size()),
                          .length = static_cast<std::uint32_t>(value.size())};
        m_document.m_text += value;
        return add({.kind = Kind::string, .text = slice});
    }
    bool binary(binary_t& /*value*/) override { return false; } // texts have none
    bool start_array(std::size_t /*size*/) override { return open(Kind::array); }
    bool end_array() override { return close(); }
    bool start_object(std::size_t /*size*/) override { return open(Kind::object); }
    bool end_object() override { return close(); }
    bool key(string_t& value) override {
        const auto [entry, isNew] =
            m_keyNumbers.try_emplace(value, static_cast<std::uint32_t>(m_document.m_keys.size()));
        if (isNew)
            m_document.m_keys.push_back(value);
        m_key = entry->second;
        return true;
    }
    bool parse_error(std::size_t position, const std::string& /*token*/,
                     const nlohmann::json::exception& error) override {
        const bool tooLarge = dynamic_cast<const nlohmann::json::out_of_range*>(&error) != nullptr;
        throw syntaxFault(m_source, position,
                          tooLarge                     ? "the number is too large"
                          : position > m_source.size() ? "the text ends here"
                                                       : "unexpected text");
    }

  private:
    bool add(Node node) {
        node.key = m_key;
        node.end = static_cast<std::uint32_t>(m_document.m_nodes.size() + 1);
        m_document.m_nodes.push_back(node);
        return true;
    }
    /// Until it is closed, a container's `end` holds the container around it.
    bool open(Kind kind) {
        const auto index = static_cast<std::uint32_t>(m_document.m_nodes.size());
        add({.kind = kind, .integer = 0});
        m_document.m_nodes.back().end = m_container;
        m_container = index;
        return true;
    }
    bool close() {
        auto& container = m_document.m_nodes[m_container];
        m_container = container.end;
        container.end = static_cast<std::uint32_t>(m_document.m_nodes.size());
        return true;
    }

    JsonDocument& m_document;
    std::string_view m_source;
    std::unordered_map<std::string, std::uint32_t> m_keyNumbers;
    std::uint32_t m_key = 0;
    std::uint32_t m_container = noContainer;
};

JsonDocument JsonDocument::parse(std::string_view text) {
    // Every value takes a character at least, so positions in the lists stay below this too.
    if (text.size() >= noContainer)
        throw JsonFault("too large, 4 GiB or more");
    JsonDocument document;
    Builder builder(document, text);
    nlohmann::json::sax_parse(text.begin(), text.end(), &builder);
    return document;
}

JsonValue JsonDocument::root() const {
    return {this, 0};
}

std::optional<bool> JsonValue::asBoolean() const {
    return kind() == Kind::boolean ? std::optional(node().integer != 0) : std::nullopt;
}

std::optional<double> JsonValue::asNumber() const {
    if (kind() == Kind::integer)
        return static_cast<double>(node().integer);
    return kind() == Kind::number ? std::optional(node().number) : std::nullopt;
}

std::optional<std::int64_t> JsonValue::asInteger() const {
    if (kind() == Kind::integer)
        return node().integer;
    constexpr double limit = 9223372036854775808.0; // 2^63, which itself does not fit
    if (kind() != Kind::number || std::trunc(node().number) != node().number ||
        node().number < -limit || node().number >= limit)
        return std::nullopt;
    return static_cast<std::int64_t>(node().number);
}

std::optional<std::string_view> JsonValue::asString() const {
    if (kind() != Kind::string)
        return std::nullopt;
    const auto slice = node().text;
    return std::string_view(m_document->m_text).substr(slice.offset, slice.length);
}

std::optional<JsonValue> JsonValue::member(std::string_view key) const {
    std::optional<JsonValue> found;
    if (kind() != Kind::object)
        return found;
    forEach([&](JsonValue value) {
        if (m_document->m_keys[value.node().key] == key)
            found = value;
    });
    return found;
}

std::string_view JsonValue::kindName() const {
    switch (kind()) {
    case Kind::null:
        return "null";
    case Kind::boolean:
        return "a Boolean";
    case Kind::integer:
    case Kind::number:
        return "a number";
    case Kind::string:
        return "a string";
    case Kind::array:
        return "a list";
    case Kind::object:
        return "an object";
    }
    return "nothing";
}

} // namespace vantro::model::json
