#include "model/Json.h"

#include "model/Validation.h"
#include "model/json/JsonCodec.h"

#include <fmt/format.h>

namespace vantro::model::json {

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
/// base name, as `url`, and is completed from the catalog afterwards.
template <>
struct Codec<BackgroundImageSource> {
    static void write(JsonWriter& out, const BackgroundImageSource& image) {
        out.beginObject(); // keys are written in sorted order here and below
        out.key(image.isBuiltIn ? "basename" : "customFilename");
        out.string(image.isBuiltIn ? image.path.stem().string() : image.path.filename().string());
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
        image.path = text("basename");
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

/// The document: a project without the place of its movie.
struct ProjectDocument {
    std::int64_t version = 1;
    std::string recordingName;
    std::shared_ptr<const RecordingMetadata> metadata;
    Edit edit;
};

/// A member of the edit, whose keys stand beside the document's own.
template <auto member>
constexpr Field<ProjectDocument> ofEdit(std::string_view key) {
    return {
        .key = key,
        .write = [](JsonWriter& out,
                    const ProjectDocument& project) { writeMember<member>(out, project.edit); },
        .read = [](const std::optional<JsonValue>& value,
                   ProjectDocument& project) { required<member>({}).read(value, project.edit); }};
}

/// The same for a key that older projects lack: one at its default is left out.
template <auto member>
constexpr Field<ProjectDocument> optionalOfEdit(std::string_view key) {
    auto field = ofEdit<member>(key);
    field.read = [](const std::optional<JsonValue>& value, ProjectDocument& project) {
        if (value)
            project.edit.*member = CodecOf<member>::read(*value);
    };
    field.isWritten = [](const ProjectDocument& project) {
        return project.edit.*member != Edit{}.*member;
    };
    return field;
}

template <>
struct Fields<ProjectDocument> {
    static constexpr std::array list{required<&ProjectDocument::version>("version"),
                                     required<&ProjectDocument::recordingName>("recordingName"),
                                     required<&ProjectDocument::metadata>("metadata"),
                                     ofEdit<&Edit::clickEvents>("editableClickEvents"),
                                     ofEdit<&Edit::segments>("segments"),
                                     ofEdit<&Edit::background>("backgroundSettings"),
                                     ofEdit<&Edit::canvasAspectRatio>("canvasAspectRatio"),
                                     ofEdit<&Edit::cursorScale>("cursorScale"),
                                     ofEdit<&Edit::webcamPosition>("webcamPosition"),
                                     ofEdit<&Edit::webcamSize>("webcamSize"),
                                     optionalOfEdit<&Edit::webcamHidden>("webcamHidden"),
                                     optionalOfEdit<&Edit::webcamMirrored>("webcamMirrored"),
                                     optionalOfEdit<&Edit::systemAudioVolume>("systemAudioVolume"),
                                     optionalOfEdit<&Edit::microphoneVolume>("microphoneVolume")};
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
        throw DecodingError(fault.description());
    }
}

} // namespace
} // namespace vantro::model::json

namespace vantro::model {
namespace {

/// Puts the catalog's picture in the place of a built-in one that has only its name yet, and a
/// custom one into the project's folder.
void complete(BackgroundType& type, const std::filesystem::path& folder,
              const BackgroundCatalog& backgrounds) {
    auto* image = std::get_if<BackgroundImageSource>(&type);
    if (image == nullptr)
        return;
    if (!image->isBuiltIn) {
        image->path = folder / image->path.filename();
        return;
    }
    const auto name = image->path.string();
    const auto found = backgrounds.builtIn(name);
    if (!found)
        throw DecodingError("Unknown built-in background: " + name);
    *image = *found;
}

} // namespace

std::string encodeMetadata(const RecordingMetadata& metadata) {
    return json::encode(metadata, json::JsonWriter::Style::compact);
}

RecordingMetadata decodeMetadata(std::string_view json) {
    auto metadata = json::decode<RecordingMetadata>(json);
    validate(metadata);
    return metadata;
}

std::string encodeProject(const Project& project) {
    return json::encode(json::ProjectDocument{.recordingName = project.name,
                                              .metadata = project.recording.sharedMetadata(),
                                              .edit = project.edit},
                        json::JsonWriter::Style::pretty);
}

Project decodeProject(std::string_view json, const std::filesystem::path& movie,
                      const BackgroundCatalog& backgrounds) {
    auto document = json::decode<json::ProjectDocument>(json);
    validate(*document.metadata, document.edit);
    complete(document.edit.background.type, movie.parent_path(), backgrounds);
    return {.name = std::move(document.recordingName),
            .recording = Recording(movie, std::move(document.metadata)),
            .edit = std::move(document.edit)};
}

} // namespace vantro::model
