#include "app/files/DiskForecast.h"

#include "app/files/RecordingFolder.h"
#include "capture/session/CursorJournal.h"
#include "capture/session/WebcamTrack.h"
#include "media/MovieRecovery.h"

#include <system_error>

#include <fmt/format.h>
#include <sys/statvfs.h>

namespace vantro::app::files {
namespace {

namespace fs = std::filesystem;

// A busy screen and a camera write 8 MB a second, and a disk is looked at every second; what else
// runs may write as well.
constexpr std::uint64_t leastReserve = 64'000'000;
// The movie's index and the metadata hold what the journals hold until then, in more words.
constexpr std::uint64_t bytesPerJournalByte = 2;

// Shorter is at the mercy of a single page that is scrolled; longer tells too late that a film
// plays.
constexpr double longestSpan = 60;
constexpr double shortestSpan = 5;
constexpr double leastGap = 1;

std::uint64_t sizeOf(const fs::path& file) {
    std::error_code none;
    const auto size = fs::file_size(file, none);
    return none ? 0 : size;
}

} // namespace

std::optional<DiskUse> diskUse(const fs::path& movie) {
    struct statvfs disk{};
    if (::statvfs(movie.parent_path().c_str(), &disk) != 0 || disk.f_blocks == 0)
        return {};
    const auto webcam = movie.parent_path() / capture::webcamMovieName;
    const auto journals = sizeOf(capture::cursorJournalPath(movie)) +
                          sizeOf(media::movieJournalPath(movie)) +
                          sizeOf(media::movieJournalPath(webcam));
    return DiskUse{.written = recordingSize(movie),
                   .free = std::uint64_t{disk.f_bavail} * disk.f_frsize,
                   .reserve = leastReserve + bytesPerJournalByte * journals};
}

std::string diskProblem(const fs::path& movie) {
    const auto use = diskUse(movie);
    if (!use || !use->isFull())
        return {};
    constexpr auto megabyte = 1'000'000;
    return fmt::format("the disk of {} is nearly full: {} MB are free, {} MB are needed",
                       movie.parent_path().string(), use->free / megabyte,
                       use->reserve / megabyte + 1);
}

void DiskForecast::add(double at, const DiskUse& use) {
    m_use = use;
    if (!m_points.empty() && at - m_points.back().at < leastGap)
        return;
    m_points.push_back({.at = at, .written = use.written});
    while (at - m_points.front().at > longestSpan)
        m_points.pop_front();
}

std::optional<double> DiskForecast::secondsLeft() const {
    if (m_points.empty())
        return {};
    const auto& [from, before] = m_points.front();
    const auto& [until, now] = m_points.back();
    if (until - from < shortestSpan || now <= before)
        return {};
    const double rate = static_cast<double>(now - before) / (until - from);
    return m_use.isFull() ? 0 : static_cast<double>(m_use.free - m_use.reserve) / rate;
}

} // namespace vantro::app::files
