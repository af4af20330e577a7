#include "model/Json.h"

#include "model/json/JsonCodec.h"

#include <fmt/format.h>

namespace vantro::model::json {

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

template <>
struct Fields<TimelineSegment> {
    static constexpr std::array list{required<&TimelineSegment::id>("id"),
                                     required<&TimelineSegment::startFraction>("startFraction"),
                                     required<&TimelineSegment::endFraction>("endFraction"),
                                     required<&TimelineSegment::speed>("speed")};
};

template <>
struct Fields<BackgroundColor> {
    static constexpr std::array list{required<&BackgroundColor::red>("red"),
                                     required<&BackgroundColor::green>("green"),
                                     required<&BackgroundColor::blue>("blue")};
};

/// Only a picture's identity is stored. A built-in one comes out of `read` with nothing but its
/// base name, as `url`, and is completed from the catalogue afterwards.
template <>
struct Codec<BackgroundImageSource> {
    static void write(JsonWriter& out, const BackgroundImageSource& image) {
        out.beginObject(); // keys are written in sorted order here and below
        out.key(image.isBuiltIn ? "basename" : "customFilename");
        out.string(image.isBuiltIn ? image.url.stem().string() : image.url.filename().string());
        out.key("isBuiltIn");
        out.boolean(image.isBuiltIn);
        out.endObject();
    }

    static BackgroundImageSource read(JsonValue value) {
        const auto text = [&](std::string_view key) {
            const auto member = requiredMember(value, key);
            return atKey(key, [&] { return Codec<std::string>::read(member); });
        };
        const auto flag = requiredMember(value, "isBuiltIn");
        if (!atKey("isBuiltIn", [&] { return Codec<bool>::read(flag); }))
            return BackgroundImageSource::custom(text("customFilename"));
        BackgroundImageSource image;
        image.url = text("basename");
        image.isBuiltIn = true;
        return image;
    }
};

/// The payload stands under the key that the discriminator names.
template <>
struct Codec<BackgroundType> {
    static void write(JsonWriter& out, const BackgroundType& type) {
        out.beginObject();
        const auto payload = [&](std::string_view key, const auto& value) {
            out.key(key);
            atKey(key, [&] { Codec<std::decay_t<decltype(value)>>::write(out, value); });
            out.key("type");
            out.plainString(key);
        };
        if (const auto* image = std::get_if<BackgroundImageSource>(&type))
            payload("image", *image);
        else
            payload("color", std::get<BackgroundColor>(type));
        out.endObject();
    }

    static BackgroundType read(JsonValue value) {
        const auto type = requiredMember(value, "type");
        const auto name = atKey("type", [&] { return Codec<std::string>::read(type); });
        if (name == "image") {
            const auto image = requiredMember(value, "image");
            return atKey("image", [&] { return Codec<BackgroundImageSource>::read(image); });
        }
        const auto color = requiredMember(value, "color");
        return atKey("color", [&] { return Codec<BackgroundColor>::read(color); });
    }
};

template <>
struct Fields<BackgroundSettings> {
    static constexpr std::array list{required<&BackgroundSettings::type>("type"),
                                     required<&BackgroundSettings::padding>("padding"),
                                     required<&BackgroundSettings::cornerRadius>("cornerRadius")};
};

/// Enumerations, stored as their raw strings.
template <typename Choice, const auto& all>
struct ChoiceCodec {
    static void write(JsonWriter& out, Choice choice) { out.plainString(rawValue(choice)); }

    static Choice read(JsonValue value) {
        const auto text = Codec<std::string>::read(value);
        std::string expected = "one of";
        for (const auto choice : all) {
            if (rawValue(choice) == text)
                return choice;
            expected +=
                fmt::format("{} \"{}\"", choice == all.front() ? "" : ",", rawValue(choice));
        }
        throw wrongText(expected, text);
    }
};

template <>
struct Codec<CanvasAspectRatio> : ChoiceCodec<CanvasAspectRatio, allCanvasAspectRatios> {};
template <>
struct Codec<WebcamPosition> : ChoiceCodec<WebcamPosition, allWebcamPositions> {};

template <>
struct Fields<ProjectData> {
    using Record = ProjectData;
    static constexpr std::array list{required<&Record::version>("version"),
                                     required<&Record::recordingName>("recordingName"),
                                     required<&Record::metadata>("metadata"),
                                     required<&Record::editableClickEvents>("editableClickEvents"),
                                     required<&Record::segments>("segments"),
                                     required<&Record::backgroundSettings>("backgroundSettings"),
                                     required<&Record::canvasAspectRatio>("canvasAspectRatio"),
                                     required<&Record::cursorScale>("cursorScale"),
                                     required<&Record::webcamPosition>("webcamPosition"),
                                     required<&Record::webcamSize>("webcamSize")};
};

namespace {

template <typename Record>
std::string encode(const Record& record, JsonWriter::Style style) {
    JsonWriter out(style);
    try {
        Codec<Record>::write(out, record);
    } catch (const JsonFault& fault) {
        throw EncodingError(fault.description());
    }
    return out.take();
}

template <typename Record>
Record decode(std::string_view text) {
    try {
        return Codec<Record>::read(JsonDocument::parse(text).root());
    } catch (const JsonFault& fault) {
        throw DecodingError(fault.description(), fault.path());
    }
}

} // namespace
} // namespace vantro::model::json

namespace vantro::model {
namespace {

/// Puts the catalogue's picture in the place of a built-in one that has only its name yet.
void complete(BackgroundType& type, const BackgroundCatalog& backgrounds) {
    auto* image = std::get_if<BackgroundImageSource>(&type);
    if (image == nullptr || !image->isBuiltIn)
        return;
    const auto name = image->url.string();
    const auto found = backgrounds.builtIn(name);
    if (!found)
        throw DecodingError("Unknown built-in background: " + name,
                            "backgroundSettings.type.image.basename");
    *image = *found;
}

} // namespace

std::string encodeMetadata(const RecordingMetadata& metadata) {
    return json::encode(metadata, json::JsonWriter::Style::compact);
}

RecordingMetadata decodeMetadata(std::string_view json) {
    return json::decode<RecordingMetadata>(json);
}

std::string encodeProject(const ProjectData& project) {
    return json::encode(project, json::JsonWriter::Style::pretty);
}

ProjectData decodeProject(std::string_view json, const BackgroundCatalog& backgrounds) {
    auto project = json::decode<ProjectData>(json);
    complete(project.backgroundSettings.type, backgrounds);
    return project;
}

} // namespace vantro::model
