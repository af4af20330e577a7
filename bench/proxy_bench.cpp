// What the small copy of a movie takes to be made: time, processor, disk; the peer is ffmpeg, which
// makes one of the same size and keyframes.
// usage: proxy_bench MOVIE FOLDER [PIECES]

#include "media/Asset.h"
#include "media/proxy/ProxyMaker.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <thread>

#include <fmt/format.h>
#include <sys/resource.h>

namespace {

using namespace vantro;
using Clock = std::chrono::steady_clock;

double processorSeconds(int who) {
    rusage usage{};
    ::getrusage(who, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void print(const char* what, double movieSeconds, Clock::time_point start, double processor,
           std::uintmax_t bytes) {
    const double wall = std::chrono::duration<double>(Clock::now() - start).count();
    fmt::print("  {:<7} {:7.1f} s of a movie in {:6.1f} s ({:4.1f} times its speed), {:6.1f} s of "
               "CPU, {:.2f} Mbit/s\n",
               what, movieSeconds, wall, movieSeconds / wall, processor,
               static_cast<double>(bytes) * 8e-6 / movieSeconds);
}

int piecesMade(const media::proxy::ProxyMovie& proxy) {
    int made = 0;
    for (int piece = 0; piece < proxy.pieceCount(); ++piece)
        made += proxy.has(piece) ? 1 : 0;
    return made;
}

} // namespace

int main(int count, char** words) {
    if (count < 3)
        return 2;
    const std::string movie = words[1];
    const std::filesystem::path folder = words[2];
    const int mostPieces = count > 3 ? std::atoi(words[3]) : 1'000'000;
    const auto asset = media::Asset::open(movie);
    const auto track = asset.tracks(media::MediaType::video).at(0);

    const auto start = Clock::now();
    std::promise<std::shared_ptr<media::proxy::ProxyMovie>> promise;
    auto maker = std::make_unique<media::proxy::ProxyMaker>(
        asset.movie(), track.id, media::proxy::ProxySettings{.folder = folder},
        [&](auto proxy) { promise.set_value(std::move(proxy)); });
    auto ready = promise.get_future();
    if (ready.wait_for(std::chrono::seconds(20)) != std::future_status::ready) {
        fmt::print("{} gets no small copy\n", movie);
        return 1;
    }
    const auto proxy = ready.get();
    const int before = piecesMade(*proxy);
    while (proxy->nextToMake() && piecesMade(*proxy) < before + mostPieces)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const int made = piecesMade(*proxy) - before;
    double seconds = 0;
    std::uintmax_t bytes = 0;
    for (int piece = 0, left = made; piece < proxy->pieceCount() && left > 0; ++piece) {
        if (!proxy->has(piece))
            continue;
        --left;
        const auto range = proxy->range(piece);
        seconds += std::max(std::min(range.end().seconds(), track.timeRange.end().seconds()) -
                                range.start.seconds(),
                            0.0);
        bytes += std::filesystem::file_size(proxy->file(piece));
    }
    fmt::print("{}\n", movie);
    print("vantro", seconds, start, processorSeconds(RUSAGE_SELF), bytes);
    maker.reset();

    const auto peer = folder / "peer.mov";
    const auto command = fmt::format(
        "nice -n 19 ffmpeg -nostdin -v error -y -t {} -i '{}' -an -vf scale=640:-2:flags=area "
        "-c:v libx264 -preset ultrafast -tune zerolatency -crf 30 -g 15 '{}'",
        seconds, movie, peer.string());
    const auto peerStart = Clock::now();
    if (std::system(command.c_str()) != 0) // NOLINT(concurrency-mt-unsafe)
        return 1;
    print("ffmpeg", seconds, peerStart, processorSeconds(RUSAGE_CHILDREN),
          std::filesystem::file_size(peer));
    std::filesystem::remove(peer);
    return 0;
}
