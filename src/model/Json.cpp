#include "model/Json.h"

#include "model/ProjectCodecs.h"
#include "model/Validation.h"

namespace vantro::model::json {
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

std::string encodeLook(const Look& look) {
    return json::encode(look, json::JsonWriter::Style::compact);
}

Look decodeLook(std::string_view json, const std::filesystem::path& pictures,
                const BackgroundCatalog& backgrounds) {
    auto look = json::decode<Look>(json);
    validate(look);
    complete(look.background.type, pictures, backgrounds);
    return look;
}

} // namespace vantro::model
