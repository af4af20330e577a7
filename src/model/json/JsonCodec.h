#pragma once

#include "model/json/JsonDocument.h"
#include "model/json/JsonFault.h"
#include "model/json/JsonWriter.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

namespace vantro::model::json {

/// How values of a type are written and read. Reading throws JsonFault. Specialised below for
/// basic types and lists; a record gets it from its list of fields.
template <typename Value>
struct Codec;

/// One member of a record: its key and how to write and read it.
template <typename Record>
struct Field {
    std::string_view key;
    void (*write)(JsonWriter&, const Record&);
    /// `value` is absent where the object has no such key.
    void (*read)(const std::optional<JsonValue>& value, Record&);
    /// Whether the key is there at all.
    bool (*isWritten)(const Record&) = [](const Record&) { return true; };
};

/// A record's fields in the order of declaration, as `static constexpr std::array list`.
template <typename Record>
struct Fields;

JsonFault wrongKind(std::string_view expected, JsonValue found);
/// "expected ..., found ...": quotes the text, cut short where it is long.
JsonFault wrongText(std::string_view expected, std::string_view found);

template <>
struct Codec<bool> {
    static void write(JsonWriter& out, bool value) { out.boolean(value); }
    static bool read(JsonValue value);
    static std::optional<bool> tryRead(JsonValue value) { return value.asBoolean(); }
};

template <>
struct Codec<double> {
    static void write(JsonWriter& out, double value) { out.number(value); }
    static double read(JsonValue value);
    static std::optional<double> tryRead(JsonValue value) { return value.asNumber(); }
};

template <>
struct Codec<std::int64_t> {
    static void write(JsonWriter& out, std::int64_t value) { out.integer(value); }
    static std::int64_t read(JsonValue value);
};

template <>
struct Codec<std::uint32_t> {
    static void write(JsonWriter& out, std::uint32_t value) { out.integer(value); }
    static std::uint32_t read(JsonValue value);
};

template <>
struct Codec<std::string> {
    static void write(JsonWriter& out, const std::string& value) { out.string(value); }
    static std::string read(JsonValue value);
};

/// Runs `action` on a member; a fault that comes out of it gets the key into its path.
template <typename Action>
auto atKey(std::string_view key, Action&& action) {
    try {
        return action();
    } catch (JsonFault& fault) {
        fault.addKey(key);
        throw;
    }
}

/// Gives each record whose identifier an earlier one has a fresh one.
template <typename Record>
void renewRepeatedIds(std::vector<Record>& list) {
    std::unordered_set<decltype(Record::id)> seen;
    for (auto& record : list)
        while (!seen.insert(record.id).second)
            record.id = decltype(Record::id)::random();
}

template <typename Element>
struct Codec<std::vector<Element>> {
    static void write(JsonWriter& out, const std::vector<Element>& list) {
        std::size_t index = 0;
        out.beginArray();
        try {
            for (const auto& element : list) {
                Codec<Element>::write(out, element);
                ++index;
            }
        } catch (JsonFault& fault) {
            fault.addIndex(index);
            throw;
        }
        out.endArray();
    }

    static std::vector<Element> read(JsonValue value) {
        if (value.kind() != JsonValue::Kind::array)
            throw wrongKind("a list", value);
        std::vector<Element> list;
        try {
            value.forEach(
                [&](JsonValue element) { list.push_back(Codec<Element>::read(element)); });
        } catch (JsonFault& fault) {
            fault.addIndex(list.size());
            throw;
        }
        if constexpr (requires(Element element) { element.id; })
            renewRepeatedIds(list);
        return list;
    }
};

/// The object's member of this name. Throws where it is missing.
JsonValue requiredMember(JsonValue object, std::string_view key);

/// A record before it is read. Identifiers are left empty: making random ones only to overwrite
/// them would cost a system call each.
template <typename Record>
Record blankRecord() {
    if constexpr (requires(Record record) { record.id; })
        return Record{.id = {}};
    else
        return Record{};
}

template <typename Record>
constexpr auto sortedFields = [] {
    auto fields = Fields<Record>::list;
    std::ranges::sort(fields, {}, &Field<Record>::key);
    return fields;
}();

/// Records: whatever has a list of fields.
template <typename Record>
    requires requires { Fields<Record>::list; }
struct Codec<Record> {
    static void write(JsonWriter& out, const Record& record) {
        out.beginObject();
        const bool sorted = out.style() == JsonWriter::Style::pretty;
        for (const auto& field : sorted ? sortedFields<Record> : Fields<Record>::list) {
            if (!field.isWritten(record))
                continue;
            out.key(field.key);
            atKey(field.key, [&] { field.write(out, record); });
        }
        out.endObject();
    }

    static Record read(JsonValue value) {
        if (value.kind() != JsonValue::Kind::object)
            throw wrongKind("an object", value);
        auto record = blankRecord<Record>();
        for (const auto& field : Fields<Record>::list)
            atKey(field.key, [&] { field.read(value.member(field.key), record); });
        return record;
    }
};

template <typename Record, typename Value>
Record recordOf(Value Record::*);
template <typename Record, typename Value>
Value valueOf(Value Record::*);

template <auto member>
using RecordOf = decltype(recordOf(member));
template <auto member>
using CodecOf = Codec<decltype(valueOf(member))>;

template <auto member>
void writeMember(JsonWriter& out, const RecordOf<member>& record) {
    CodecOf<member>::write(out, record.*member);
}

/// A member that must be there and be right.
template <auto member>
constexpr Field<RecordOf<member>> required(std::string_view key) {
    return {.key = key,
            .write = writeMember<member>,
            .read = [](const std::optional<JsonValue>& value, RecordOf<member>& record) {
                if (!value)
                    throw JsonFault("missing");
                record.*member = CodecOf<member>::read(*value);
            }};
}

/// A member that keeps its default where it is missing or cannot be read.
template <auto member>
constexpr Field<RecordOf<member>> lenient(std::string_view key) {
    return {.key = key,
            .write = writeMember<member>,
            .read = [](const std::optional<JsonValue>& value, RecordOf<member>& record) {
                if (const auto read = value ? CodecOf<member>::tryRead(*value) : std::nullopt)
                    record.*member = *read;
            }};
}

/// An identifier that is made anew where it is missing or cannot be read.
template <auto member>
constexpr Field<RecordOf<member>> lenientIdentifier(std::string_view key) {
    return {.key = key,
            .write = writeMember<member>,
            .read = [](const std::optional<JsonValue>& value, RecordOf<member>& record) {
                const auto read = value ? CodecOf<member>::tryRead(*value) : std::nullopt;
                record.*member = read ? *read : decltype(valueOf(member))::random();
            }};
}

} // namespace vantro::model::json
