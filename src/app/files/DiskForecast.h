#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <optional>
#include <string>

namespace vantro::app::files {

/// How a recording and its file system stand: bytes.
struct DiskUse {
    std::uint64_t written = 0; ///< by the recording
    std::uint64_t free = 0;
    std::uint64_t reserve = 0; ///< that has to stay free for what is written at the end

    bool isFull() const { return free <= reserve; }
};

/// Of the recording with this movie; nothing where the file system does not tell. Any thread.
std::optional<DiskUse> diskUse(const std::filesystem::path& movie);

/// One sentence for a disk that is too full for a recording with this movie to begin; empty where
/// there is room, and where that cannot be known. Its folder exists.
std::string diskProblem(const std::filesystem::path& movie);

/// Foresees when a disk is full from what a recording has written lately. A value.
class DiskForecast {
  public:
    // Seconds that are left when it is worth a word, and when it is worth a warning.
    static constexpr double soon = 3600;
    static constexpr double verySoon = 300;

    /// `at`: seconds of the recording so far, ascending. At most one use a second counts.
    void add(double at, const DiskUse& use);
    /// Nothing while too little is known, and while nothing is written.
    std::optional<double> secondsLeft() const;

  private:
    struct Point {
        double at = 0; ///< seconds
        std::uint64_t written = 0;
    };

    std::deque<Point> m_points; ///< of the last minute
    DiskUse m_use;              ///< the latest
};

} // namespace vantro::app::files
