// What searching a movie for zooms to suggest takes: the pointer resting all the time, which is the
// worst, and for two seconds out of ten; the peer is ffmpeg, which decodes the same movie to small
// pictures.
// usage: suggest_bench MOVIE

#include "media/Asset.h"
#include "media/changes/ChangeSearch.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <future>

#include <fmt/format.h>
#include <sys/resource.h>

namespace {

using namespace vantro;
using Clock = std::chrono::steady_clock;

struct Usage {
    Clock::time_point start = Clock::now();
    double processor = 0;
    explicit Usage(int who) : processor(processorSeconds(who)) {}

    static double processorSeconds(int who) {
        rusage usage{};
        ::getrusage(who, &usage);
        const auto seconds = [](const timeval& time) {
            return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
        };
        return seconds(usage.ru_utime) + seconds(usage.ru_stime);
    }
    void print(const char* what, int who, double movieSeconds) const {
        const double wall = std::chrono::duration<double>(Clock::now() - start).count();
        fmt::print("  {:<36} {:6.1f} s, {:6.1f} s of CPU, {:5.1f} times its speed\n", what, wall,
                   processorSeconds(who) - processor, movieSeconds / wall);
    }
};

/// Of parts where nothing is ever found, so that each watch is searched to its end.
void search(const media::Asset& asset, const char* what, double distance, double length) {
    const double seconds = asset.duration().seconds();
    std::vector<media::changes::Watch> watches;
    for (double from = 0; from < seconds; from += distance)
        watches.push_back({.from = from,
                           .until = std::min(from + length, seconds),
                           .part = {.x = 0.3, .y = 0.3, .width = 0.3, .height = 0.3}});
    std::promise<std::size_t> found;
    const Usage usage(RUSAGE_SELF);
    const media::changes::ChangeSearch search(asset.movie(), watches, [&](auto news) {
        if (const auto* changes = std::get_if<media::changes::FoundChanges>(&news))
            found.set_value(static_cast<std::size_t>(std::ranges::count_if(
                *changes, [](const auto& each) { return each.has_value(); })));
    });
    const auto count = found.get_future().get();
    usage.print(what, RUSAGE_SELF, seconds);
    if (count > 0)
        fmt::print("    {} of {} watches ended early\n", count, watches.size());
}

} // namespace

int main(int count, char** words) {
    if (count != 2)
        return 2;
    const std::string movie = words[1];
    const auto asset = media::Asset::open(movie);
    fmt::print("{}: {:.0f} s\n", movie, asset.duration().seconds());
    search(asset, "vantro, resting all the time", 4, 4);
    search(asset, "vantro, two seconds out of ten", 10, 2);
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    fmt::print("  vantro took at most {} MB\n", usage.ru_maxrss / 1000);
    const Usage peer(RUSAGE_CHILDREN);
    const auto command = fmt::format("ffmpeg -nostdin -v error -i '{}' -an -vf "
                                     "scale=160:-2:flags=fast_bilinear -f null -",
                                     movie);
    if (std::system(command.c_str()) != 0) // NOLINT(concurrency-mt-unsafe)
        return 1;
    peer.print("ffmpeg, to pictures of 160 pixels", RUSAGE_CHILDREN, asset.duration().seconds());
    return 0;
}
