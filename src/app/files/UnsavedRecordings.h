#pragma once

#include "media/values/PixelBuffer.h"
#include "model/Recording.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantro::app::files {

/// A recording that lies where recordings are made and that no project holds.
struct UnsavedRecording {
    std::filesystem::path movie;
    std::string name;
    std::filesystem::file_time_type made; ///< when its movie was last written
    std::uintmax_t bytes = 0;
    bool isInterrupted = false; ///< its program was killed before it was finished
    bool operator==(const UnsavedRecording&) const = default;
};

/// What takes a look into the movie.
struct RecordingDetails {
    std::optional<double> seconds;                     ///< none for what cannot be told yet
    std::shared_ptr<const media::PixelBuffer> picture; ///< bgra; null when there is none to show
};

/// The newest first, without those that are under way or open. Reads no movie. Any thread; blocks.
std::vector<UnsavedRecording> unsavedRecordings();
/// Any thread; blocks; never throws for what is in the recording.
RecordingDetails recordingDetails(const std::filesystem::path& movie);

/// What a recording is called: as it was named, else by the time it was made.
std::string recordingName(const std::filesystem::path& movie);
/// Throws std::filesystem::filesystem_error.
void nameRecording(const std::filesystem::path& movie, const std::string& name);

} // namespace vantro::app::files
