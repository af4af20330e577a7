#include "media/MovieRecovery.h"

#include "base/Journal.h"
#include "media/av/Libraries.h"
#include "media/av/movie/MovieJournal.h"
#include "media/av/movie/MovieRepair.h"

#include <system_error>

namespace vantro::media {

std::filesystem::path movieJournalPath(const std::filesystem::path& movie) {
    return av::movieJournalPath(movie);
}

MovieCondition movieCondition(const std::filesystem::path& movie) {
    const auto journal = movieJournalPath(movie);
    std::error_code error;
    if (!std::filesystem::exists(journal, error))
        return MovieCondition::whole;
    return base::isJournalBeingWritten(journal) ? MovieCondition::beingWritten
                                                : MovieCondition::interrupted;
}

void recoverMovie(const std::filesystem::path& movie, std::optional<MediaTime> endTime) {
    if (movieCondition(movie) == MovieCondition::beingWritten)
        av::fail("Cannot recover", movie, "It is still being recorded");
    av::repairMovie(movie, endTime);
}

} // namespace vantro::media
