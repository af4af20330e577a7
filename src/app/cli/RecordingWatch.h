#pragma once

#include "capture/Recorder.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

namespace vantro::app::cli {

/// When a recording ends by itself.
struct RecordingLimits {
    double seconds = -1;                ///< never when negative
    std::optional<std::uint64_t> bytes; ///< of the movie file; never when absent
};

/// Why a recording has ended.
/// `desktop`: the user has stopped it by the desktop's own means.
/// `diskFull`: nearly; what is written at the end still finds room.
enum class RecordingEnd {
    interrupt,
    seconds,
    maxSize,
    desktop,
    streamStopped,
    writerFailed,
    diskFull
};

/// As it stands in machine-readable output.
std::string_view rawValue(RecordingEnd end);

/// A size in bytes: a positive number and perhaps k, M, G or T for powers of 1000, with or without
/// a B, in any case ("500M", "1.5 GB"). Nothing for any other text and for less than one byte.
std::optional<std::uint64_t> parseByteSize(const std::string& text);

/// Shows on the terminal how a recording goes and what it has to do without, until it is
/// interrupted, reaches a limit or cannot go on. The size of `movie` is looked at a few times a
/// second, so it ends a little above.
RecordingEnd watchRecording(capture::Recorder& recorder, const std::filesystem::path& movie,
                            const RecordingLimits& limits, const std::stop_token& interrupted);

} // namespace vantro::app::cli
