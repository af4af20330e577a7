#include "app/cli/RecordingWatch.h"

#include "app/cli/Interrupt.h"
#include "app/cli/StatusLine.h"
#include "app/files/DiskForecast.h"
#include "base/HostClock.h"
#include "capture/StillnessWatch.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <set>
#include <system_error>

#include <fmt/format.h>

namespace vantro::app::cli {
namespace {

// How often the status line changes, and how soon the end of a stream or a full size is noticed. At
// the recorder's bit rate the movie grows by 1.5 MB in that time.
constexpr double statusPeriod = 0.25; // seconds

/// The power of 1000 that a unit stands for; nothing for an unknown one.
std::optional<int> powerOf(std::string_view unit) {
    if (!unit.empty() && (unit.back() == 'B' || unit.back() == 'b'))
        unit.remove_suffix(1);
    if (unit.empty())
        return 0;
    constexpr std::string_view letters = "kmgt";
    const char letter = static_cast<char>(unit.front() | 0x20); // lower case
    const auto index = letters.find(letter);
    if (unit.size() > 1 || index == std::string_view::npos)
        return {};
    return static_cast<int>(index) + 1;
}

bool isAtLeast(const std::filesystem::path& file, std::uint64_t bytes) {
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    return !error && size >= bytes;
}

std::optional<RecordingEnd> endOf(capture::RecordingCondition condition) {
    switch (condition) {
    case capture::RecordingCondition::recording:
        return {};
    case capture::RecordingCondition::userStopped:
        return RecordingEnd::desktop;
    case capture::RecordingCondition::streamStopped:
        return RecordingEnd::streamStopped;
    case capture::RecordingCondition::writerFailed:
        break;
    }
    return RecordingEnd::writerFailed;
}

/// "sound [####----]" for each, on a scale of decibels.
std::string meters(const std::vector<capture::SoundStatus>& sounds) {
    constexpr int width = 8;
    constexpr double range = 60; // dB below full scale that are shown
    std::string text;
    for (const auto& sound : sounds) {
        const double decibels = 20 * std::log10(std::max(sound.level, 1e-6F));
        text += fmt::format("  {} {}", sound.kind == capture::SoundKind::system ? "sound" : "mic",
                            progressBar(1 + decibels / range, width));
    }
    return text;
}

/// How long the disk of a recording lasts.
class DiskWatch {
  public:
    explicit DiskWatch(std::filesystem::path movie) : m_movie(std::move(movie)) {}

    void look(double elapsed) {
        const auto use = files::diskUse(m_movie);
        m_isFull = use && use->isFull();
        if (use)
            m_forecast.add(elapsed, *use);
        m_isNearlyFull = m_isNearlyFull || left() < files::DiskForecast::verySoon;
    }
    bool isFull() const { return m_isFull; }
    /// And stays so: what is left goes up and down with what the screen shows.
    bool isNearlyFull() const { return m_isNearlyFull; }
    /// "  disk full in 12:30", as long as that is soon.
    std::string text() const {
        return left() < files::DiskForecast::soon ? "  disk full in " + clockText(left()) : "";
    }

  private:
    double left() const {
        return m_forecast.secondsLeft().value_or(std::numeric_limits<double>::infinity());
    }

    const std::filesystem::path m_movie;
    files::DiskForecast m_forecast;
    bool m_isFull = false;
    bool m_isNearlyFull = false;
};

/// Tells once, in a line each, of what is asked for and not recorded.
class Notices {
  public:
    explicit Notices(StatusLine& line) : m_line(line) {}

    void tellOf(const capture::RecordingStatistics& statistics, const DiskWatch& disk) {
        std::set<std::string> now;
        if (disk.isNearlyFull())
            now.insert("vantro: the disk is full in less than five minutes\n");
        for (const auto& lost : statistics.lostSources)
            now.insert("vantro: not recorded: " + lost + "\n");
        for (const auto& note : statistics.notes)
            now.insert("vantro: " + note + "\n");
        for (const auto& sound : statistics.sounds)
            if (sound.kind == capture::SoundKind::microphone && sound.isSilent)
                now.insert("vantro: the microphone has been silent for 5 seconds\n");
        for (const auto& notice : now)
            if (!m_told.contains(notice)) {
                m_line.clear();
                tell(notice);
            }
        m_told = std::move(now);
    }

  private:
    StatusLine& m_line;
    std::set<std::string> m_told; ///< and still so
};

} // namespace

std::string_view rawValue(RecordingEnd end) {
    constexpr std::array names{"interrupt",     "seconds",      "maxSize", "desktop",
                               "streamStopped", "writerFailed", "diskFull"};
    return names.at(static_cast<std::size_t>(end));
}

std::optional<std::uint64_t> parseByteSize(const std::string& text) {
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [next, error] = std::from_chars(text.data(), end, number, std::chars_format::fixed);
    if (error != std::errc())
        return {};
    std::string_view unit(next, static_cast<std::size_t>(end - next));
    unit.remove_prefix(std::min(unit.find_first_not_of(' '), unit.size()));
    const auto power = powerOf(unit);
    if (!power)
        return {};
    const double bytes = number * std::pow(1000.0, *power);
    constexpr double limit = static_cast<double>(std::numeric_limits<std::int64_t>::max());
    if (!(bytes >= 1 && bytes < limit))
        return {};
    return static_cast<std::uint64_t>(bytes);
}

RecordingEnd watchRecording(capture::Recorder& recorder, const std::filesystem::path& movie,
                            const RecordingLimits& limits, const std::stop_token& interrupted) {
    StatusLine line;
    Notices notices(line);
    DiskWatch disk(movie);
    capture::StillnessWatch stillness;
    const auto started = base::hostNow();
    for (;;) {
        const double elapsed = base::inSeconds(base::hostNow() - started);
        const auto statistics = recorder.statistics();
        disk.look(elapsed);
        notices.tellOf(statistics, disk);
        if (const auto end = endOf(statistics.condition))
            return *end;
        if (interrupted.stop_requested())
            return RecordingEnd::interrupt;
        if (limits.seconds >= 0 && elapsed >= limits.seconds)
            return RecordingEnd::seconds;
        // One frame at least, however small the limit.
        if (limits.bytes && statistics.framesCaptured > 0 && isAtLeast(movie, *limits.bytes))
            return RecordingEnd::maxSize;
        if (disk.isFull())
            return RecordingEnd::diskFull;
        if (stillness.hasRested(elapsed, statistics)) {
            line.clear();
            tell(fmt::format("vantro: nothing has moved for {:.0f} minutes\n",
                             capture::StillnessWatch::longestRest / 60));
        }
        line.show(fmt::format("Recording {}  {} frames, {} dropped{}{}  (Ctrl-C to stop)",
                              clockText(elapsed), statistics.framesCaptured,
                              statistics.framesDropped, meters(statistics.sounds), disk.text()));
        waitFor(limits.seconds < 0 ? statusPeriod
                                   : std::min(statusPeriod, limits.seconds - elapsed),
                interrupted);
    }
}

} // namespace vantro::app::cli
