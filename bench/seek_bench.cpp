// What a player waits for: opening a movie, and seeking in it to places spread over its length.
// Usage: seek_bench MOVIE [SEEKS]. Prints milliseconds of wall time and of this process's CPU:
//   open       reading what the movie holds, and opening one more source of its pictures
//   exact      frameAt
//   near       frameNear with a tolerance of 0.1 s
//   keyframe   keyframeAt
//   given up   from the wish to stop in the middle of an exact seek to its end
// and beside them the peer, `ffmpeg -ss T -i MOVIE -frames:v 1 -f null -`, which seeks exactly too;
// its start, which a player would not pay for, is taken off as the time of its first picture.

#include "media/FrameSource.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <fmt/format.h>

namespace {

using namespace vantro;
using Clock = std::chrono::steady_clock;

double milliseconds(Clock::time_point since) {
    return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

struct Latencies {
    std::string name;
    std::vector<double> values; ///< milliseconds
    double cpu = 0;             ///< milliseconds of all

    template <typename Work>
    void add(Work&& work) {
        const auto start = Clock::now();
        const auto cpuStart = std::clock();
        work();
        cpu += 1000.0 * static_cast<double>(std::clock() - cpuStart) / CLOCKS_PER_SEC;
        values.push_back(milliseconds(start));
    }
    void print() {
        std::ranges::sort(values);
        const auto at = [&](double share) {
            return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
        };
        fmt::print("{:<12} median {:8.1f}  95th {:8.1f}  worst {:8.1f} ms   CPU {:8.1f} ms each\n",
                   name, at(0.5), at(0.95), at(1), cpu / static_cast<double>(values.size()));
    }
};

void peerSeek(const std::string& movie, double seconds) {
    const auto command =
        fmt::format("ffmpeg -nostdin -v error -ss {:.6f} -i '{}' -map 0:v:0 -frames:v 1 -f null -",
                    seconds, movie);
    if (std::system(command.c_str()) != 0) // NOLINT(concurrency-mt-unsafe)
        std::exit(1);
}

} // namespace

int main(int count, char** words) {
    if (count < 2)
        return 2;
    const std::string movie = words[1];
    const int seeks = count > 2 ? std::atoi(words[2]) : 60;
    Latencies open{"open", {}};
    Latencies another{"open again", {}};
    for (int i = 0; i < 5; ++i) {
        open.add([&] { media::Asset::open(movie); });
        const auto asset = media::Asset::open(movie);
        another.add(
            [&] { media::FrameSource(asset, asset.tracks(media::MediaType::video)[0].id); });
    }
    const auto asset = media::Asset::open(movie);
    media::FrameSource source(asset, asset.tracks(media::MediaType::video)[0].id);
    const double length = asset.duration().seconds();
    std::mt19937 random(3);
    std::vector<media::MediaTime> times;
    for (int i = 0; i < seeks; ++i)
        times.push_back(media::MediaTime::fromSeconds(
            std::uniform_real_distribution(0.0, length - 0.1)(random)));

    Latencies exact{"exact", {}};
    Latencies near{"near 0.1 s", {}};
    Latencies keyframe{"keyframe", {}};
    Latencies givenUp{"given up", {}};
    Latencies peer{"ffmpeg -ss", {}};
    double peerStart = 1e9;
    for (int i = 0; i < 5; ++i) {
        const auto start = Clock::now();
        peerSeek(movie, 0);
        peerStart = std::min(peerStart, milliseconds(start));
    }
    for (const auto time : times) {
        exact.add([&] { source.frameAt(time); });
        near.add([&] { source.frameNear(time + media::MediaTime{7, 1}, {1, 10}); });
        keyframe.add([&] { source.keyframeAt(time + media::MediaTime{13, 1}); });
        std::stop_source stop;
        Clock::time_point wished;
        {
            const std::jthread canceller([&] {
                std::this_thread::sleep_for(std::chrono::milliseconds(3));
                wished = Clock::now();
                stop.request_stop();
            });
            source.frameAt(time + media::MediaTime{21, 1}, stop.get_token());
        }
        givenUp.values.push_back(milliseconds(wished));
        const auto start = Clock::now();
        peerSeek(movie, time.seconds());
        peer.values.push_back(milliseconds(start) - peerStart);
    }
    fmt::print("{}, {:.0f} s, {} seeks\n", movie, length, seeks);
    for (auto* figures : {&open, &another, &exact, &near, &keyframe, &givenUp, &peer})
        figures->print();
}
