#include "media/TestMovies.h"
#include "media/proxy/ProxyCache.h"
#include "media/proxy/ProxyReader.h"
#include "media/proxy/ProxyRig.h"

#include <future>
#include <set>

#include <fmt/format.h>
#include <gmock/gmock.h>
namespace vantro::media::proxy {
namespace {

namespace fs = std::filesystem;
using test::ProxyRig;
using testing::ElementsAre;
using testing::IsEmpty;

/// Twenty numbered pictures a second, of 160x90, and what makes them into a movie.
void makeMovie(const fs::path& movie, int count, const std::string& options) {
    test::makeNumberedMovie(movie, {count, 160, 90, 20}, options);
}

std::optional<VideoFrame> ask(ProxyReader& reader, MediaTime t) {
    std::promise<std::optional<VideoFrame>> answer;
    reader.request(t, {}, [&](auto frame) { answer.set_value(std::move(frame)); });
    return answer.get_future().get();
}

struct Kind {
    const char* name;
    const char* file;
    int count; ///< of pictures
    const char* options;
};

class ProxyOfMovie : public testing::TestWithParam<Kind> {};

TEST_P(ProxyOfMovie, ShowsAtEachTimeWhatTheMovieShows) {
    const test::TemporaryFolder folder;
    const auto movie = folder / GetParam().file;
    makeMovie(movie, GetParam().count, GetParam().options);
    ProxyRig rig(movie, folder / "cache");
    const auto proxy = rig.whole();
    ASSERT_NE(proxy, nullptr);
    const auto asset = Asset::open(movie);
    const auto track = asset.tracks(MediaType::video).at(0);
    FrameSource source(asset, track.id);
    ProxyReader reader(proxy, static_cast<int>(track.naturalSize.width),
                       static_cast<int>(track.naturalSize.height));
    std::set<int> numbers;
    for (auto t = MediaTime{}; t < track.timeRange.end();) {
        const auto frame = test::shownAt(source, t);
        const auto end = frame.presentationTime + frame.duration;
        // A movie that rounds its times shows the next picture a moment before its time already.
        for (const auto each : {t, end - MediaTime{1, 4 * end.timescale}}) {
            const int number = test::numberIn(*test::shownAt(source, each).pixels);
            ASSERT_TRUE(reader.has(each));
            const auto small = ask(reader, each);
            ASSERT_TRUE(small) << each.seconds();
            ASSERT_EQ(test::numberIn(*small->pixels), number) << each.seconds();
            numbers.insert(number);
            ASSERT_EQ(small->pixels->width(), frame.pixels->width());
            ASSERT_EQ(small->pixels->height(), frame.pixels->height());
        }
        t = end;
    }
    EXPECT_EQ(numbers.size(), static_cast<std::size_t>(GetParam().count));
    EXPECT_EQ(proxy->pieceCount(), GetParam().count / 600 + 1);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ProxyOfMovie,
    testing::Values(
        Kind{"variableRate", "movie.mov", 660,
             "-vf settb=1/90000,setpts='(N+mod(N*7\\,5)/9)/20/TB' -fps_mode passthrough "
             "-enc_time_base 1/90000 -video_track_timescale 90000 -c:v libx264 -pix_fmt yuv420p "
             "-bf 3 -g 300"},
        Kind{
            "milliseconds", "movie.mkv", 660,
            "-vf settb=1/20000,setpts=N*1001/20000/TB -fps_mode passthrough -enc_time_base 1/20000 "
            "-c:v libx264 -pix_fmt yuv420p -g 250"},
        Kind{"wideAndFullColor", "movie.mov", 220,
             "-vf scale=1300:730:flags=neighbor -c:v libx264 -pix_fmt yuv444p -g 250 "
             "-preset ultrafast"}),
    [](const auto& each) { return each.param.name; });

TEST(ProxyNeed, IsOfLongMoviesWithGroupsThatTakeLong) {
    struct Case {
        const char* name;
        int count, group;
        double longestSearch;
        bool needs;
    };
    const test::TemporaryFolder folder;
    for (const auto& each :
         {Case{"longGroups", 220, 220, 0, true}, Case{"halfASecond", 220, 10, 0, false},
          Case{"shortMovie", 180, 180, 0, false},
          // 220 of 160x90 at 700 million pixels a second
          Case{"justTooSlow", 220, 220, 0.0045, true},
          Case{"justFastEnough", 220, 220, 0.0046, false}}) {
        for (const char* kind : {"mov", "mkv"}) {
            SCOPED_TRACE(fmt::format("{} {}", each.name, kind));
            const auto movie = folder / (std::string("movie.") + kind);
            makeMovie(movie, each.count,
                      fmt::format("-c:v libx264 -pix_fmt yuv420p -bf 0 -sc_threshold 0 -g {}",
                                  each.group));
            const auto track = Asset::open(movie).tracks(MediaType::video).at(0);
            EXPECT_EQ(needsProxy({movie}, track, each.longestSearch), each.needs);
        }
    }
}

TEST(ProxyMovie, TheNextPieceIsTheNearestToWhereSomebodyLooks) {
    ProxyMovie proxy({170, 1}, [](int) { return fs::path(); });
    ASSERT_EQ(proxy.pieceCount(), 6);
    std::vector<int> order;
    proxy.want({100, 1});
    while (const auto piece = proxy.nextToMake()) {
        order.push_back(*piece);
        order.size() % 2 == 0 ? proxy.giveUp(*piece) : proxy.add(*piece);
        if (order.size() == 3)
            proxy.want({1, 1});
    }
    EXPECT_THAT(order, ElementsAre(3, 4, 2, 0, 1, 5));
    EXPECT_EQ(proxy.pieceAt({1000, 1}), 5);
}

class ProxyFiles : public testing::Test {
  protected:
    ProxyFiles() {
        makeMovie(movie, 1300, "-c:v libx264 -pix_fmt yuv420p -g 400 -preset ultrafast");
    }
    std::vector<std::string> cached() const {
        std::vector<std::string> found;
        for (const auto& entry : fs::directory_iterator(cache))
            found.push_back(entry.path().filename());
        std::ranges::sort(found);
        return found;
    }

    test::TemporaryFolder folder;
    const fs::path movie = folder / "movie.mov";
    const fs::path cache = folder / "cache";
};

TEST_F(ProxyFiles, MakingThatIsGivenUpLeavesWholePiecesOnly) {
    {
        ProxyRig rig(movie, cache);
        ASSERT_TRUE(test::eventually([&] { return fs::exists(cache) && !cached().empty(); }));
        EXPECT_THAT(cached(), testing::Each(testing::StartsWith("."))) << "the first is under way";
    }
    EXPECT_THAT(cached(), IsEmpty());
}

TEST_F(ProxyFiles, AMovieThatWasMovedFindsItsPiecesAndAnotherDoesNot) {
    ASSERT_NE(ProxyRig(movie, cache).whole(), nullptr);
    EXPECT_EQ(fs::status(cache).permissions(), fs::perms::owner_all);
    const auto pieces = cached();
    EXPECT_EQ(pieces.size(), 3U);
    const auto moved = folder / "moved.mov";
    fs::rename(movie, moved);
    const auto proxy = ProxyRig(moved, cache).proxy();
    ASSERT_NE(proxy, nullptr);
    EXPECT_EQ(proxy->nextToMake(), std::nullopt);
    EXPECT_EQ(cached(), pieces);
    const auto key = proxyKey(moved);
    fs::last_write_time(moved, fs::last_write_time(moved) + std::chrono::seconds(1));
    EXPECT_NE(proxyKey(moved), key);
}

TEST_F(ProxyFiles, ADamagedPieceIsOfNoUseAndGoes) {
    const auto proxy = ProxyRig(movie, cache).whole();
    ASSERT_NE(proxy, nullptr);
    fs::resize_file(proxy->file(0), fs::file_size(proxy->file(0)) / 2);
    fs::remove(proxy->file(1));
    ProxyReader reader(proxy, 160, 90);
    EXPECT_FALSE(ask(reader, {5, 1}));
    EXPECT_FALSE(ask(reader, {35, 1}));
    EXPECT_TRUE(ask(reader, {61, 1}));
    EXPECT_FALSE(reader.has({5, 1}));
    EXPECT_THAT(cached(), ElementsAre(proxy->file(2).filename()));
    std::stop_source stop;
    stop.request_stop();
    std::promise<bool> found;
    reader.request({61, 1}, stop.get_token(), [&](auto frame) { found.set_value(!!frame); });
    EXPECT_FALSE(found.get_future().get());
    EXPECT_TRUE(reader.has({61, 1})) << "one that is given up is no damage";
}

TEST_F(ProxyFiles, WhatIsUsedLeastGoesFirstAndAMovieNeverPushesOutItself) {
    constexpr std::uintmax_t megabyte = 1'000'000;
    const ProxyCache store(cache, 100 * megabyte);
    const auto now = fs::file_time_type::clock::now();
    for (int piece = 0; piece < 5; ++piece) {
        std::ofstream(store.file("other", piece)).close();
        fs::resize_file(store.file("other", piece), 10 * megabyte);
        fs::last_write_time(store.file("other", piece), now - std::chrono::hours(piece + 1));
    }
    std::ofstream(store.file("own", 0)).close();
    fs::resize_file(store.file("own", 0), 50 * megabyte);
    EXPECT_TRUE(store.use("other", 4));
    EXPECT_FALSE(store.use("other", 7));
    EXPECT_TRUE(store.makeRoom("own"));
    EXPECT_THAT(cached(),
                ElementsAre("other-0000.mov", "other-0001.mov", "other-0004.mov", "own-0000.mov"));
    fs::resize_file(store.file("own", 0), 90 * megabyte);
    EXPECT_FALSE(store.makeRoom("own"));
    EXPECT_THAT(cached(), ElementsAre("own-0000.mov"));
    EXPECT_THROW(ProxyCache(store.file("own", 0)), fs::filesystem_error);
}

} // namespace
} // namespace vantro::media::proxy
