#pragma once

#include "model/BackgroundCatalog.h"
#include "model/DecodingError.h"
#include "model/Project.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vantro::model {

/// A record that JSON cannot hold because one of its numbers is not finite; the text names its key.
class EncodingError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Encoding throws EncodingError, decoding DecodingError. Decoding is strict: every key must be
// there with a value of its type, except that the has-flags of a recording's metadata fall back to
// false, and a click's identifier, offsets and zoom level to those of a fresh click, so that
// recordings from before these existed still open. Unknown keys are ignored; of a repeated key the
// last one counts; a repeated identifier gives way to a fresh one. What is read is also sound, as
// Validation.h has it. Any thread.

/// "metadata.json": compact, keys in the order of declaration.
std::string encodeMetadata(const RecordingMetadata& metadata);
RecordingMetadata decodeMetadata(std::string_view json);

/// "project.json": pretty-printed with sorted keys. Those that came later (webcamHidden and the
/// like) are written only where they are not at their default, and may be missing.
std::string encodeProject(const Project& project);
/// The project whose movie is at `movie`. Any integer will do as its version. Built-in backgrounds
/// are stored by name and looked up in the catalog; one that is not there fails with "Unknown
/// built-in background: NAME". A custom picture lies beside the movie.
Project decodeProject(std::string_view json, const std::filesystem::path& movie,
                      const BackgroundCatalog& backgrounds = BackgroundCatalog::application());

/// A look by itself, compact. Pictures are stored and found as a project's; custom ones lie in
/// `pictures`.
std::string encodeLook(const Look& look);
Look decodeLook(std::string_view json, const std::filesystem::path& pictures,
                const BackgroundCatalog& backgrounds = BackgroundCatalog::application());

} // namespace vantro::model
