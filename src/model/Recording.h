#pragma once

#include "model/RecordingMetadata.h"

#include <filesystem>
#include <memory>
#include <utility>

namespace vantro::model {

/// What was recorded: where its movies lie and what is known about them. It never changes. Copies
/// share the samples, so a copy is cheap whatever the recording's length; saving a project gives
/// another Recording of the same metadata at the package's paths. Any thread.
class Recording {
  public:
    Recording(std::filesystem::path movie, RecordingMetadata metadata)
        : Recording(std::move(movie),
                    std::make_shared<const RecordingMetadata>(std::move(metadata))) {}
    Recording(std::filesystem::path movie, std::shared_ptr<const RecordingMetadata> metadata)
        : m_movie(std::move(movie)), m_metadata(std::move(metadata)) {}

    /// The screen's movie, with its sound.
    const std::filesystem::path& movie() const { return m_movie; }
    /// The camera's movie, beside the screen's; there only if the metadata says so.
    std::filesystem::path webcamMovie() const { return m_movie.parent_path() / "webcam.mov"; }
    const RecordingMetadata& metadata() const { return *m_metadata; }
    const std::shared_ptr<const RecordingMetadata>& sharedMetadata() const { return m_metadata; }

    /// The same recording after its files have been linked or copied to another place.
    Recording movedTo(std::filesystem::path movie) const { return {std::move(movie), m_metadata}; }

    /// Whether both are the same recording, wherever their files lie; decided without looking at
    /// the samples.
    bool isSameAs(const Recording& other) const { return m_metadata == other.m_metadata; }

    bool operator==(const Recording& other) const {
        return m_movie == other.m_movie && (isSameAs(other) || *m_metadata == *other.m_metadata);
    }

  private:
    std::filesystem::path m_movie;
    std::shared_ptr<const RecordingMetadata> m_metadata; ///< never null
};

} // namespace vantro::model
