// What it costs to record a Wayland desktop through the portal, beside a plain GStreamer pipeline
// on the same stream: portal_bench VANTRO [SECONDS]
#include "base/HostClock.h"
#include "capture/pictures/PictureComparison.h"
#include "support/ScriptedScreen.h"
#include "support/WaylandDesk.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace vantro::test;

struct Cost {
    double seconds = 0; ///< of processor time
    long frames = 0;
    double share(double wall) const { return 100 * seconds / wall; }
    double perFrame() const { return 1000 * seconds / static_cast<double>(frames); }
};

long framesIn(const std::string& movie) {
    const auto command = fmt::format("ffprobe -v quiet -select_streams v -count_packets "
                                     "-show_entries stream=nb_read_packets -of csv=p=0 '{}'",
                                     movie);
    FILE* pipe = ::popen(command.c_str(), "r");
    long frames = 0;
    if (pipe == nullptr || std::fscanf(pipe, "%ld", &frames) != 1)
        frames = 0;
    if (pipe != nullptr)
        ::pclose(pipe);
    return frames;
}

std::string lastLineOf(const std::string& path) {
    std::ifstream file(path);
    std::string last = "it said nothing";
    for (std::string line; std::getline(file, line);)
        if (!line.empty())
            last = line;
    return last;
}

/// Runs a command of the shell that makes a movie; what it and its children take of the processors.
/// Throws std::runtime_error when there are no pictures in that.
Cost run(const char* who, const std::string& command, const std::string& movie) {
    const auto log = movie.substr(0, movie.find('.')) + ".log";
    std::filesystem::remove(movie);
    const pid_t process = ::fork();
    if (process == 0) {
        ::execl("/bin/sh", "sh", "-c", fmt::format("exec {} >{} 2>&1", command, log).c_str(),
                nullptr);
        ::_exit(127);
    }
    int status = 0;
    rusage used{};
    ::wait4(process, &status, 0, &used);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    const Cost cost{seconds(used.ru_utime) + seconds(used.ru_stime), framesIn(movie)};
    if (cost.frames == 0)
        throw std::runtime_error(fmt::format("{} has recorded nothing: {}", who, lastLineOf(log)));
    return cost;
}

/// All of it changes with each frame.
ScreenFrame busyFrame(const ScreenProfile& profile, int number) {
    constexpr int side = 120;
    ScreenFrame frame;
    for (int y = 0; y < profile.height; y += side)
        for (int x = 0; x < profile.width; x += side)
            frame.patches.push_back(
                {x, y, side, side,
                 static_cast<std::uint32_t>((x * 31 + y * 17 + number * 4099) * 2654435761U)});
    frame.pointer = {{number % profile.width, 300}};
    return frame;
}

/// Only a small part changes, as while somebody types.
ScreenFrame calmFrame(const ScreenProfile& profile, int number) {
    auto frame = busyFrame(profile, 0);
    frame.patches.push_back({400, 300, 64, 32, number % 2 ? 0xffffffU : 0U});
    return frame;
}

/// What finding out takes that nothing has changed.
double millisecondsToCompare(const ScreenProfile& profile) {
    namespace pictures = vantro::capture::pictures;
    constexpr int rounds = 200;
    const auto stride = std::ptrdiff_t{4} * profile.width;
    const std::vector<std::uint8_t> picture(static_cast<std::size_t>(stride * profile.height), 77);
    pictures::PictureComparison comparison(profile.width, profile.height);
    pictures::TileMap changed(profile.width, profile.height);
    comparison.collect(picture.data(), stride, changed);
    const auto start = vantro::base::hostNow();
    for (int i = 0; i < rounds; ++i)
        comparison.collect(picture.data(), stride, changed);
    return 1000 * vantro::base::inSeconds(vantro::base::hostNow() - start) / rounds;
}

void measure(const char* vantro, int seconds) {
    WaylandDesk desk;
    const ScreenProfile profile{.width = 1920, .height = 1080};
    ScriptedScreen screen(profile);
    screen.show(busyFrame(profile, 0));
    desk.startPortal({.node = screen.node()});
    const auto folder = desk.folder().path().string();
    const auto project = folder + "/made.vantro";
    const auto ours = [&] {
        return run(
            "Vantro",
            fmt::format("env TMPDIR={0} '{1}' record --no-system-audio --force --seconds {2} "
                        "--output {3}",
                        folder, vantro, seconds, project),
            project + "/recording.mov");
    };
    const auto still = ours();
    fmt::print("still 1080p screen:  Vantro {:.1f} % of a core, {} frames\n", still.share(seconds),
               still.frames);
    screen.animate([&](int number) { return calmFrame(profile, number); });
    const auto calm = ours();
    fmt::print("calm 1080p60 screen: Vantro {:.1f} % of a core, {} frames, {:.2f} ms each; finding "
               "no change takes {:.2f} ms\n",
               calm.share(seconds), calm.frames, calm.perFrame(), millisecondsToCompare(profile));
    screen.animate([&](int number) { return busyFrame(profile, number); });
    const auto busy = ours();
    const auto movie = folder + "/peer.mp4";
    const auto peer =
        run("GStreamer",
            fmt::format("timeout -s INT {} gst-launch-1.0 -e pipewiresrc path={} ! videoconvert ! "
                        "x264enc speed-preset=ultrafast bitrate=50000 cabac=true dct8x8=true ! "
                        "mp4mux ! filesink location={}",
                        seconds, screen.node(), movie),
            movie);
    fmt::print("busy 1080p60 screen: Vantro {:.0f} % of a core, {} frames, {:.2f} ms each\n",
               busy.share(seconds), busy.frames, busy.perFrame());
    fmt::print("         GStreamer, x264: {:.0f} % of a core, {} frames, {:.2f} ms each\n",
               peer.share(seconds), peer.frames, peer.perFrame());
    fmt::print("Vantro takes {:.2f} of its processor time a frame\n",
               busy.perFrame() / peer.perFrame());
}

} // namespace

int main(int argc, char** argv) {
    const int seconds = argc > 2 ? std::atoi(argv[2]) : 10;
    if (argc < 2 || seconds <= 0 || !WaylandDesk::isInstalled())
        return std::puts("portal_bench VANTRO [SECONDS]; needs xdg-desktop-portal and PipeWire"), 2;
    try {
        measure(argv[1], seconds);
    } catch (const std::exception& error) {
        fmt::print(stderr, "portal_bench: {}\n", error.what());
        return 1;
    }
}
