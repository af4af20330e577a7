#include "app/files/OwnMovie.h"

#include "app/files/ProjectPackage.h"
#include "media/Asset.h"
#include "media/values/MediaError.h"
#include "model/VantroError.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace vantro::app::files {
namespace {

/// Plainly longer or shorter: a recording's movie lasts as long as its metadata says, one from
/// elsewhere in its place nearly so.
bool disagree(double movie, double told) {
    constexpr double mostSeconds = 2;
    constexpr double mostOfLonger = 0.1;
    const double difference = std::abs(movie - told);
    return difference > mostSeconds && difference > mostOfLonger * std::max(movie, told);
}

} // namespace

void requireOwnMovie(const model::Recording& recording) {
    const double told = recording.metadata().endTime;
    double movie = 0;
    try {
        movie = media::Asset::open(recording.movie()).duration().seconds();
    } catch (const media::MediaError&) {
        return;
    }
    if (told > 0 && disagree(movie, told))
        throw model::VantroError(
            model::VantroError::Kind::projectOpenFailed,
            fmt::format("{}: it lasts {:.1f} s, but the recording that {} tells of lasted "
                        "{:.1f} s; they do not belong together",
                        recording.movie().string(), movie, package::projectFile, told));
}

} // namespace vantro::app::files
