#pragma once

#include "model/Edit.h"
#include "model/RecordingCodecs.h"

#include <fmt/format.h>

namespace vantro::model::json {

// How a project and its edit are written and read. Validation is another matter, and so is finding
// the pictures that backgrounds name.

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

template <>
struct Fields<Look> {
    static constexpr std::array list{required<&Look::background>("backgroundSettings"),
                                     required<&Look::canvasAspectRatio>("canvasAspectRatio")};
};

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
    static constexpr std::array list{
        required<&ProjectDocument::version>("version"),
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
        optionalOfEdit<&Edit::microphoneVolume>("microphoneVolume"),
        optionalOfEdit<&Edit::microphoneNoiseReduced>("microphoneNoiseReduced")};
};

} // namespace vantro::model::json
