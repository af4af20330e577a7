#include "model/json/JsonCodec.h"

#include <cmath>
#include <concepts>
#include <limits>
#include <utility>

#include <fmt/format.h>

namespace vantro::model::json {
namespace {

template <std::integral Integer>
Integer readInteger(JsonValue value) {
    const auto number = value.asNumber();
    if (!number)
        throw wrongKind("an integer", value);
    if (std::trunc(*number) != *number)
        throw JsonFault(fmt::format("expected an integer, found {}", *number));
    const auto integer = value.asInteger();
    if (!integer || !std::in_range<Integer>(*integer))
        throw JsonFault(fmt::format("out of range, must be from {} to {}",
                                    std::numeric_limits<Integer>::min(),
                                    std::numeric_limits<Integer>::max()));
    return static_cast<Integer>(*integer);
}

template <typename Value>
Value readScalar(JsonValue value, std::string_view expected) {
    if (const auto read = Codec<Value>::tryRead(value))
        return *read;
    throw wrongKind(expected, value);
}

} // namespace

JsonFault wrongKind(std::string_view expected, JsonValue found) {
    return JsonFault(fmt::format("expected {}, found {}", expected, found.kindName()));
}

JsonFault wrongText(std::string_view expected, std::string_view found) {
    constexpr std::size_t longest = 60;
    auto length = std::min(found.size(), longest);
    while (length < found.size() && length > 0 && (found[length] & 0xC0) == 0x80)
        --length; // do not cut through a character
    return JsonFault(fmt::format("expected {}, found \"{}{}\"", expected, found.substr(0, length),
                                 length < found.size() ? "…" : ""));
}

bool Codec<bool>::read(JsonValue value) {
    return readScalar<bool>(value, "a Boolean");
}

double Codec<double>::read(JsonValue value) {
    return readScalar<double>(value, "a number");
}

std::int64_t Codec<std::int64_t>::read(JsonValue value) {
    return readInteger<std::int64_t>(value);
}

std::uint32_t Codec<std::uint32_t>::read(JsonValue value) {
    return readInteger<std::uint32_t>(value);
}

std::string Codec<std::string>::read(JsonValue value) {
    const auto text = value.asString();
    if (!text)
        throw wrongKind("a string", value);
    return std::string(*text);
}

JsonValue requiredMember(JsonValue object, std::string_view key) {
    if (object.kind() != JsonValue::Kind::object)
        throw wrongKind("an object", object);
    if (const auto value = object.member(key))
        return *value;
    auto fault = JsonFault("missing");
    fault.addKey(key);
    throw fault;
}

} // namespace vantro::model::json
