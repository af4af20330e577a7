#include "TestMovies.h"
#include "media/values/MediaError.h"

#include <random>
#include <set>
#include <stop_token>
#include <thread>

#include <gmock/gmock.h>
namespace vantro::media {
namespace {

constexpr int frameCount = 120;

/// When picture `number` of the test movies is shown: irregular, in ticks of 1/90000 s.
std::int64_t ticksOf(int number) {
    return number * 1500LL + std::int64_t{number} * number * 37 % 11 * 100;
}

/// Painted pictures at irregular times, with reordered frames and open groups of pictures.
void makeMovie(const std::filesystem::path& movie, const std::string& options) {
    test::makeNumberedMovie(
        movie, {frameCount, 160, 90, 60},
        "-vf \"settb=1/90000,setpts='N*1500+mod(N*N*37,11)*100'\" -vsync passthrough "
        "-enc_time_base 1:90000 -c:v libx264 -pix_fmt yuv420p " +
            options);
}

int numberShownAt(FrameSource& source, std::int64_t ticks) {
    const auto frame = source.frameAt({ticks, 90'000});
    return frame ? test::numberIn(*frame->pixels) : -1;
}

class FrameSourceOfMovie : public testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(FrameSourceOfMovie, findsTheLatestPictureNotAfterAnyTimeInAnyOrder) {
    const test::TemporaryFolder folder;
    const auto movie = folder / GetParam().first;
    makeMovie(movie, GetParam().second);
    const auto asset = Asset::open(movie);
    FrameSource source(asset, 0);
    for (int number = 0; number < frameCount; ++number) {
        ASSERT_EQ(numberShownAt(source, ticksOf(number)), number);
        ASSERT_EQ(numberShownAt(source, ticksOf(number + 1) - 1), number);
    }
    std::mt19937 random(5);
    for (int i = 0; i < 60; ++i) {
        const int number = static_cast<int>(random() % frameCount);
        ASSERT_EQ(numberShownAt(source, ticksOf(number)), number) << "after " << i << " jumps";
        if (number > 0) {
            ASSERT_EQ(numberShownAt(source, ticksOf(number) - 1), number - 1);
        }
    }
    EXPECT_EQ(numberShownAt(source, -90'000), 0);
    EXPECT_EQ(numberShownAt(source, ticksOf(frameCount) * 10), frameCount - 1);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, FrameSourceOfMovie,
    testing::Values(std::pair{"shortGroups.mov", "-bf 3 -g 12 -video_track_timescale 90000"},
                    std::pair{"openGroups.mp4", "-bf 3 -g 30 -flags -cgop -x264-params "
                                                "open-gop=1:b-pyramid=normal "
                                                "-video_track_timescale 90000"},
                    std::pair{"oneGroup.mov", "-bf 2 -g 1000 -video_track_timescale 90000"},
                    std::pair{"broadcast.ts", "-bf 2 -g 20"}));

TEST(FrameSource, findsUnreferencedPicturesThatStayLong) {
    const test::TemporaryFolder folder;
    test::makeNumberedMovie(folder / "slow.mov", {40, 160, 90, 1},
                            "-c:v libx264 -pix_fmt yuv420p -bf 3 -b_strategy 0 -g 1000");
    FrameSource source(Asset::open(folder / "slow.mov"), 0);
    for (const int number : {39, 3, 5, 14, 9, 30, 31, 33, 2, 38})
        ASSERT_EQ(numberShownAt(source, number * 90'000LL + 80'000), number);
}

TEST(FrameSource, isRightAfterSearchesThatWereGivenUpAnywhere) {
    const test::TemporaryFolder folder;
    makeMovie(folder / "m.mov", "-bf 3 -g 60 -video_track_timescale 90000");
    FrameSource source(Asset::open(folder / "m.mov"), 0);
    std::mt19937 random(17);
    bool gaveUpInTheMiddle = false;
    // On a busy machine it takes more rounds until one is given up in the middle.
    for (int i = 0; i < 150 || (!gaveUpInTheMiddle && i < 3000); ++i) {
        std::stop_source stop;
        const std::jthread canceller([&, yields = random() % 400] {
            for (unsigned k = 0; k < yields; ++k)
                std::this_thread::yield();
            stop.request_stop();
        });
        const MediaTime wanted{ticksOf(static_cast<int>(random() % frameCount)), 90'000};
        const auto kept = source.keptBytes();
        const auto found = i % 2 == 0 ? source.frameAt(wanted, stop.get_token())
                                      : source.frameNear(wanted, {1, 12}, stop.get_token());
        gaveUpInTheMiddle = gaveUpInTheMiddle || (!found && source.keptBytes() != kept);
        if (i % 3 == 0) {
            const int number = static_cast<int>(random() % frameCount);
            ASSERT_EQ(numberShownAt(source, ticksOf(number)), number) << "in round " << i;
        }
    }
    EXPECT_TRUE(gaveUpInTheMiddle);
}

TEST(FrameSource, leavesOutUnreferencedPicturesWhileItIsToldTo) {
    const test::TemporaryFolder folder;
    makeMovie(folder / "m.mov", "-bf 1 -b_strategy 0 -g 20 -video_track_timescale 90000");
    FrameSource source(Asset::open(folder / "m.mov"), 0);
    const auto distinct = [&] {
        std::set<int> numbers;
        for (int number = 0; number < frameCount; ++number) {
            const int shown = numberShownAt(source, ticksOf(number));
            EXPECT_LE(shown, number);
            EXPECT_GE(shown, number - 2);
            numbers.insert(shown);
        }
        return numbers.size();
    };
    source.setSkipsUnreferenced(true);
    EXPECT_LT(distinct(), frameCount * 6U / 10);
    source.setSkipsUnreferenced(false);
    EXPECT_EQ(distinct(), frameCount);
}

TEST(FrameSource, keepsAsMuchAsItIsToldTo) {
    const test::TemporaryFolder folder;
    makeMovie(folder / "m.mov", "-bf 2 -g 1000 -video_track_timescale 90000");
    FrameSource source(Asset::open(folder / "m.mov"), 0);
    numberShownAt(source, ticksOf(0));
    const auto pictureBytes = source.keptBytes() / 2; // and the one after it
    const auto bound = pictureBytes * 10 + pictureBytes / 2;
    source.setKeptBytes(bound);
    for (int number = 0; number < 60; ++number) {
        numberShownAt(source, ticksOf(number));
        ASSERT_LE(source.keptBytes(), bound);
    }
    EXPECT_GE(source.keptBytes(), bound - pictureBytes);
    const auto back = test::shownAt(source, {ticksOf(52), 90'000});
    const auto ahead = test::shownAt(source, {ticksOf(59), 90'000});
    EXPECT_EQ(test::shownAt(source, {ticksOf(52), 90'000}).pixels, back.pixels);
    EXPECT_EQ(test::shownAt(source, {ticksOf(59), 90'000}).pixels, ahead.pixels);
    source.setKeptBytes(0);
    EXPECT_LE(source.keptBytes(), 2 * pictureBytes + 1);
    EXPECT_EQ(numberShownAt(source, ticksOf(60)), 60);
}

} // namespace
} // namespace vantro::media
