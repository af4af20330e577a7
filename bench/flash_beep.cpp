// Edits a movie that flashes and beeps at every full second, and finds out how far apart flash and
// beep are in what was made of it.
//   flash_beep plan SOURCE FOLDER   writes FOLDER/film.vantro, 50 segments of a ten-minute SOURCE
//                                   with cuts and speeds; FOLDER/filter, the same for ffmpeg; and
//                                   FOLDER/expected, when the flashes must come
//   flash_beep measure MOVIE EXPECTED

#include "app/files/ProjectStores.h"
#include "media/AudioMixReader.h"
#include "media/FrameSource.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <exception>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include <fmt/format.h>

namespace {

using namespace vantro;

constexpr int frameRate = 60;
constexpr int sourceSeconds = 600;
constexpr int segmentCount = 50;

/// Begins and ends at a flash, and at these speeds on a frame of the output.
struct Stretch {
    int from; ///< seconds
    int to;
    double speed;
};

std::vector<Stretch> stretches() {
    constexpr std::array speeds{1.0, 2.0, 0.5, 1.5, 4.0, 0.25, 3.0, 0.75};
    std::vector<Stretch> all;
    for (int index = 0; index < segmentCount; ++index) {
        const int from = index * sourceSeconds / segmentCount;
        all.push_back({from, from + 4 + index % 6, speeds[index % speeds.size()]});
    }
    return all;
}

void writeProject(const std::filesystem::path& source, const std::filesystem::path& folder) {
    model::RecordingMetadata metadata;
    metadata.frameRate = frameRate;
    metadata.endTime = sourceSeconds;
    metadata.captureRect = {0, 0, 640, 360};
    std::vector<model::TimelineSegment> segments;
    for (const auto& [from, to, speed] : stretches())
        segments.push_back({.startFraction = from / double{sourceSeconds},
                            .endFraction = to / double{sourceSeconds},
                            .speed = speed});
    model::Project project{"film", model::Recording(source, std::move(metadata)), {}};
    project.edit.segments = std::move(segments);
    app::files::saveProject(folder / "film.vantro", project, true);
}

/// One line for each flash: its time, the speed, and 1 if a segment begins with it.
void writeExpected(const std::filesystem::path& folder) {
    std::ofstream file(folder / "expected");
    double start = 0;
    for (const auto& [from, to, speed] : stretches()) {
        for (int second = from; second < to; ++second)
            file << fmt::format("{:.9f} {} {:d}\n", start + (second - from) / speed, speed,
                                second == from);
        start += (to - from) / speed;
    }
}

/// ffmpeg's filters for sound halve or double at most in good quality.
std::string tempo(double speed) {
    if (speed < 0.5)
        return "atempo=0.5," + tempo(speed / 0.5);
    return speed > 2 ? "atempo=2," + tempo(speed / 2) : fmt::format("atempo={}", speed);
}

void writeFilter(const std::filesystem::path& folder) {
    std::ofstream file(folder / "filter");
    const auto all = stretches();
    std::string ends;
    for (const auto* kind : {"", "a"}) {
        file << fmt::format("[0:{}]{}split={}", *kind == 'a' ? "a" : "v", kind, all.size());
        for (std::size_t index = 0; index < all.size(); ++index)
            file << fmt::format("[s{}{}]", kind, index);
        file << ";\n";
    }
    for (std::size_t index = 0; index < all.size(); ++index) {
        const auto& [from, to, speed] = all[index];
        file << fmt::format("[s{}]trim={}:{},setpts=(PTS-STARTPTS)/{},fps={}[v{}];\n", index, from,
                            to, speed, frameRate, index);
        file << fmt::format("[sa{}]atrim={}:{},asetpts=PTS-STARTPTS,{}[a{}];\n", index, from, to,
                            tempo(speed), index);
        ends += fmt::format("[v{}][a{}]", index, index);
    }
    file << fmt::format("{}concat=n={}:v=1:a=1[v][a]\n", ends, all.size());
}

/// When the picture turns white; seconds.
std::vector<double> flashTimes(const std::filesystem::path& movie) {
    const auto asset = media::Asset::open(movie);
    media::FrameSource source(asset, asset.tracks(media::MediaType::video).front().id);
    std::vector<double> times;
    bool wasWhite = false;
    for (int frame = 0; media::MediaTime{frame, frameRate} < asset.duration(); ++frame) {
        const auto picture = source.frameAt({frame, frameRate});
        if (!picture)
            break;
        const auto& pixels = *picture->pixels;
        const bool isWhite = pixels.row(0, pixels.height() / 2)[pixels.width() / 2] > 128;
        if (isWhite && !wasWhite)
            times.push_back(static_cast<double>(frame) / frameRate);
        wasWhite = isWhite;
    }
    return times;
}

/// When sound begins after 20 ms of quiet, at a fifth of its full amplitude; seconds.
std::vector<double> beepTimes(const std::filesystem::path& movie) {
    constexpr float audible = 0.1F;
    constexpr std::int64_t quietEnough = media::mixing::sampleRate * 20 / 1000;
    const auto asset = media::Asset::open(movie);
    media::Composition composition(asset);
    composition.addTrack(media::MediaType::audio)
        .insert({{}, asset.duration()}, asset.tracks(media::MediaType::audio).front(), {});
    media::AudioMixReader reader(composition);
    std::vector<double> times;
    std::int64_t position = 0;
    std::int64_t quiet = quietEnough;
    while (const auto buffer = reader.copyNextBuffer())
        for (std::size_t i = 0; i < buffer->samples.size(); i += 2, ++position) {
            if (std::abs(buffer->samples[i]) < audible) {
                ++quiet;
                continue;
            }
            if (quiet >= quietEnough)
                times.push_back(static_cast<double>(position) / media::mixing::sampleRate);
            quiet = 0;
        }
    return times;
}

double nearest(const std::vector<double>& times, double wanted) {
    return *std::ranges::min_element(times, {},
                                     [wanted](double time) { return std::abs(time - wanted); });
}

void measure(const std::filesystem::path& movie, const std::filesystem::path& expected) {
    const auto flashes = flashTimes(movie);
    const auto beeps = beepTimes(movie);
    std::ifstream file(expected);
    double time = 0;
    double speed = 0;
    bool isBoundary = false;
    double atBoundaries = 0;
    double last = 0;
    double flashError = 0;
    std::map<double, double> atSpeed;
    while (file >> time >> speed >> isBoundary) {
        const double flash = nearest(flashes, time);
        last = std::abs(nearest(beeps, flash) - flash);
        flashError = std::max(flashError, std::abs(flash - time));
        atSpeed[speed] = std::max(atSpeed[speed], last);
        if (isBoundary)
            atBoundaries = std::max(atBoundaries, last);
    }
    constexpr double inMilliseconds = 1000;
    fmt::print("{:10.2f} {:10.2f} {:12.2f}", atBoundaries * inMilliseconds, last * inMilliseconds,
               flashError * inMilliseconds);
    for (const auto& [value, worst] : atSpeed)
        fmt::print("  {}x {:.2f}", value, worst * inMilliseconds);
    fmt::print("  ({} flashes, {} beeps)\n", flashes.size(), beeps.size());
}

} // namespace

int main(int argc, char** argv) try {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() == 3 && arguments[0] == "plan") {
        writeProject(arguments[1], arguments[2]);
        writeExpected(arguments[2]);
        writeFilter(arguments[2]);
    } else if (arguments.size() == 3 && arguments[0] == "measure") {
        measure(arguments[1], arguments[2]);
    } else {
        fmt::print(stderr, "usage: flash_beep plan SOURCE FOLDER | measure MOVIE EXPECTED\n");
        return 2;
    }
    return 0;
} catch (const std::exception& error) {
    fmt::print(stderr, "flash_beep: {}\n", error.what());
    return 1;
}
