#pragma once

#include "model/Recording.h"
#include "model/json/JsonCodec.h"

namespace vantro::model::json {

// How the records of a recording are written and read. Validation is another matter.

template <>
struct Codec<Uuid> {
    static void write(JsonWriter& out, const Uuid& value) { out.plainString(value.toString()); }
    static std::optional<Uuid> tryRead(JsonValue value) {
        const auto text = value.asString();
        return text ? Uuid::parse(*text) : std::nullopt;
    }
    static Uuid read(JsonValue value) {
        if (const auto id = tryRead(value))
            return *id;
        constexpr std::string_view expected = "a UUID";
        const auto text = value.asString();
        throw text ? wrongText(expected, *text) : wrongKind(expected, value);
    }
};

template <typename Element>
struct Codec<SharedList<Element>> {
    static void write(JsonWriter& out, const SharedList<Element>& list) {
        Codec<std::vector<Element>>::write(out, list);
    }
    static SharedList<Element> read(JsonValue value) {
        return Codec<std::vector<Element>>::read(value);
    }
};

template <typename Record>
struct Codec<std::shared_ptr<const Record>> {
    static void write(JsonWriter& out, const std::shared_ptr<const Record>& record) {
        Codec<Record>::write(out, *record);
    }
    static std::shared_ptr<const Record> read(JsonValue value) {
        return std::make_shared<const Record>(Codec<Record>::read(value));
    }
};

template <>
struct Fields<Rect> {
    static constexpr std::array list{required<&Rect::x>("x"), required<&Rect::y>("y"),
                                     required<&Rect::width>("width"),
                                     required<&Rect::height>("height")};
};

template <>
struct Fields<CursorPosition> {
    static constexpr std::array list{required<&CursorPosition::x>("x"),
                                     required<&CursorPosition::y>("y"),
                                     required<&CursorPosition::timestamp>("timestamp")};
};

template <>
struct Fields<ClickEvent> {
    static constexpr std::array list{lenientIdentifier<&ClickEvent::id>("id"),
                                     required<&ClickEvent::x>("x"),
                                     required<&ClickEvent::y>("y"),
                                     required<&ClickEvent::timestamp>("timestamp"),
                                     required<&ClickEvent::isRightClick>("isRightClick"),
                                     lenient<&ClickEvent::startOffset>("startOffset"),
                                     lenient<&ClickEvent::endOffset>("endOffset"),
                                     lenient<&ClickEvent::zoomLevel>("zoomLevel")};
};

template <>
struct Fields<RecordingMetadata> {
    using Record = RecordingMetadata;
    static constexpr std::array list{required<&Record::startTime>("startTime"),
                                     required<&Record::endTime>("endTime"),
                                     required<&Record::captureRect>("captureRect"),
                                     required<&Record::displayID>("displayID"),
                                     required<&Record::frameRate>("frameRate"),
                                     required<&Record::displayScaleFactor>("displayScaleFactor"),
                                     required<&Record::cursorPositions>("cursorPositions"),
                                     required<&Record::clickEvents>("clickEvents"),
                                     lenient<&Record::hasSystemAudio>("hasSystemAudio"),
                                     lenient<&Record::hasMicrophoneAudio>("hasMicrophoneAudio"),
                                     lenient<&Record::hasWebcam>("hasWebcam")};
};

} // namespace vantro::model::json
