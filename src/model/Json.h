#pragma once

#include "model/BackgroundCatalog.h"
#include "model/Project.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vantro::model {

/// A document that cannot be read. The text names the key by its path and says what is wrong with
/// it, for example: metadata.clickEvents[3].x: expected a number, found a string
class DecodingError : public std::runtime_error {
  public:
    DecodingError(const std::string& text, std::string path)
        : std::runtime_error(text), m_path(std::move(path)) {}

    /// The key's path alone; empty where the document as a whole is at fault.
    const std::string& path() const { return m_path; }

  private:
    std::string m_path;
};

/// A record that JSON cannot hold because one of its numbers is not finite; the text names its key.
class EncodingError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Encoding throws EncodingError, decoding DecodingError. Decoding is strict: every key must be
// there with a value of its type, except that the has-flags of a recording's metadata fall back to
// false, and a click's identifier, offsets and zoom level to those of a fresh click, so that
// recordings from before these existed still open; optional keys must have their type where they
// are there. Unknown keys are ignored; of a repeated key the
// last one counts. What the values mean is not looked at: see Validation.h. Any thread.

/// "metadata.json": compact, keys in the order of declaration.
std::string encodeMetadata(const RecordingMetadata& metadata);
RecordingMetadata decodeMetadata(std::string_view json);

/// "project.json": pretty-printed with sorted keys. What an edit has come to know later than the
/// other keys is written only where it is not at its default.
std::string encodeProject(const Project& project);
/// The project whose movie is at `movie`. Any integer will do as its version. Built-in backgrounds
/// are stored by name and looked up in the catalogue; one that is not there fails with "Unknown
/// built-in background: NAME". A custom picture lies beside the movie.
Project decodeProject(std::string_view json, const std::filesystem::path& movie,
                      const BackgroundCatalog& backgrounds = BackgroundCatalog::application());

} // namespace vantro::model
