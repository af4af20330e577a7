#pragma once

#include "media/values/MediaTime.h"

#include <filesystem>
#include <optional>

namespace vantro::media {

// A movie of the type quickTimeMovie under way has a journal beside it, which goes when the movie
// is finished. While the writer lives it is locked; one that is left behind tells of a movie whose
// writer was killed, and holds what is needed to make it whole.

/// The journal of `movie`: its name with ".journal" behind.
std::filesystem::path movieJournalPath(const std::filesystem::path& movie);

enum class MovieCondition {
    whole,        ///< nothing is to be recovered, or nothing is there at all
    beingWritten, ///< a writer, of whatever process, is at work
    interrupted,  ///< recoverMovie is needed
};

MovieCondition movieCondition(const std::filesystem::path& movie);

/// Makes an interrupted movie whole, in its place: the packets that its journal lists stay where
/// they are, and get an index behind them. The last picture stays until `endTime` at least. What is
/// damaged and all behind it is left out. Needs hardly any room; until the journal goes at the end
/// it may be tried again. Throws MediaError with path and reason. Any thread; blocks.
void recoverMovie(const std::filesystem::path& movie, std::optional<MediaTime> endTime = {});

} // namespace vantro::media
