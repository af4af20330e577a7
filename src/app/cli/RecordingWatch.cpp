#include "app/cli/RecordingWatch.h"

#include "app/cli/Interrupt.h"
#include "app/cli/StatusLine.h"
#include "base/HostClock.h"

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
// What is left to record stays the same in a pause, however little it is.
constexpr double shortestWait = 0.01; // seconds

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

/// Tells once, in a line each, of what is asked for and not recorded.
class Notices {
  public:
    explicit Notices(StatusLine& line) : m_line(line) {}

    void tellOf(const capture::RecordingStatistics& statistics) {
        std::set<std::string> now;
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
    constexpr std::array names{"interrupt", "seconds",       "maxSize",
                               "desktop",   "streamStopped", "writerFailed"};
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
    const auto started = base::hostNow();
    for (;;) {
        const auto statistics = recorder.statistics();
        const double elapsed = base::inSeconds(base::hostNow() - started - statistics.pausedFor);
        notices.tellOf(statistics);
        if (const auto end = endOf(statistics.condition))
            return *end;
        if (interrupted.stop_requested())
            return RecordingEnd::interrupt;
        if (limits.seconds >= 0 && elapsed >= limits.seconds)
            return RecordingEnd::seconds;
        // One frame at least, however small the limit.
        if (limits.bytes && statistics.framesCaptured > 0 && isAtLeast(movie, *limits.bytes))
            return RecordingEnd::maxSize;
        line.show(fmt::format("{} {}  {} frames, {} dropped{}  (Ctrl-C to stop)",
                              statistics.isPaused ? "Paused at" : "Recording", clockText(elapsed),
                              statistics.framesCaptured, statistics.framesDropped,
                              meters(statistics.sounds)));
        waitFor(limits.seconds < 0
                    ? statusPeriod
                    : std::clamp(limits.seconds - elapsed, shortestWait, statusPeriod),
                interrupted);
    }
}

} // namespace vantro::app::cli
