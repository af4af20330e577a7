#include "media/TestMovies.h"
#include "media/strips/StripRig.h"
#include "media/strips/ThumbnailCache.h"
#include "media/strips/Waveform.h"

#include <filesystem>
#include <fstream>

namespace vantro::media::strips {
namespace {

namespace fs = std::filesystem;
using test::StripRig;

/// Numbered pictures, 20 a second and 320x180, with a keyframe every `keyframes`, and these other
/// inputs and options.
void makeMovie(const fs::path& movie, int count, int keyframes, const std::string& rest) {
    test::makeNumberedMovie(movie, {count, 320, 180, 20},
                            rest + " -c:v libx264 -preset ultrafast -g " +
                                std::to_string(keyframes));
}

/// Twelve seconds of silence, with a beep of half loudness from 4 to 4.5 s on one track and, twice
/// as quiet, from 7 s on another.
constexpr auto beeps =
    "-f lavfi -i \"aevalsrc='0.5*sin(2*PI*1000*t)*between(t,4,4.5)':s=48000:d=12\" "
    "-f lavfi -i \"aevalsrc='0.25*sin(2*PI*500*t)*gte(t,7)':s=44100:d=12\" "
    "-map 0 -map 1 -map 2 -c:a aac -b:a 192k";

/// The file with these codes made unknown to everybody.
void writeWithout(const fs::path& from, const std::vector<std::string>& codes, const fs::path& to) {
    std::ifstream file(from, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(file), {});
    for (const auto& code : codes)
        for (auto at = bytes.find(code); at != std::string::npos; at = bytes.find(code))
            bytes.replace(at, code.size(), "zzzz");
    std::ofstream(to, std::ios::binary) << bytes;
}

double secondsOf(const std::vector<PeakPiece>& pieces) {
    std::size_t buckets = 0;
    for (const auto& piece : pieces)
        buckets += piece.peaks.size();
    return static_cast<double>(buckets) / 100;
}

TEST(StripMaker, thumbnailsAreThePicturesOfTheirTimesAndKeyframesWhereThatIsAllowed) {
    const test::TemporaryFolder folder;
    makeMovie(folder / "movie.mov", 200, 50, "");
    StripRig rig(folder / "movie.mov");
    const std::vector<std::int64_t> ticks{0, 320, 96, 400};
    rig.maker().look({.ticks = ticks, .tolerance = 0});
    ASSERT_TRUE(rig.becomes([](const auto& told) { return told.thumbnails.size() == 4; }));
    const auto told = rig.told();
    EXPECT_EQ(told.order, ticks);
    EXPECT_NEAR(told.format.value_or(StripFormat()).seconds, 10, 0.01);
    for (const auto tick : ticks) {
        const auto& pixels = *told.thumbnails.at(tick).pixels;
        EXPECT_EQ(std::pair(pixels.width(), pixels.height()), std::pair(142, 80));
        EXPECT_EQ(test::numberIn(pixels), tick * 20 / ticksPerSecond) << tick;
    }
    for (const auto& [tick, keyframe] : {std::pair{310, 50}, {470, 100}}) {
        rig.maker().look({.ticks = {tick}, .tolerance = 160});
        ASSERT_TRUE(rig.becomes([&](const auto& now) { return now.thumbnails.contains(tick); }));
        EXPECT_EQ(test::numberIn(*rig.told().thumbnails.at(tick).pixels), keyframe);
        EXPECT_EQ(rig.told().thumbnails.at(tick).shown, keyframe * ticksPerSecond / 20);
    }
}

TEST(StripMaker, anotherViewComesFirstAndASearchIsGivenUpForIt) {
    const test::TemporaryFolder folder;
    makeMovie(folder / "movie.mov", 600, 5000, "-r 100"); // one group of half a minute
    StripRig rig(folder / "movie.mov");
    const StripView whole{.ticks = {0, 28L * ticksPerSecond, 14L * ticksPerSecond}, .tolerance = 0};
    rig.maker().look(whole);
    ASSERT_TRUE(rig.becomes([](const auto& told) { return told.thumbnails.contains(0); }));
    rig.maker().look({.ticks = {64}, .tolerance = 0}); // while it searches for the second
    ASSERT_TRUE(rig.becomes([](const auto& told) { return told.thumbnails.contains(64); }));
    EXPECT_EQ(rig.told().order, (std::vector<std::int64_t>{0, 64}));
    EXPECT_EQ(test::numberIn(*rig.told().thumbnails.at(64).pixels), 20);
    rig.maker().look(whole);
    rig.maker().stop();
    EXPECT_TRUE(test::eventually([&] { return rig.maker().hasEnded(); }));
    EXPECT_FALSE(rig.told().thumbnails.contains(whole.ticks.back()));
}

TEST(StripMaker, whatAMovieLacksOrLostIsLeftOut) {
    const test::TemporaryFolder folder;
    makeMovie(folder / "silent.mov", 200, 20, "");
    test::runFfmpeg("-f lavfi -i sine=d=3", folder / "heard.m4a");
    makeMovie(folder / "whole.mov", 200, 20, beeps + std::string(" -movflags +faststart"));
    fs::copy(folder / "whole.mov", folder / "cut.mov");
    fs::resize_file(folder / "cut.mov", fs::file_size(folder / "cut.mov") / 2);
    writeWithout(folder / "whole.mov", {"mp4a", "esds"}, folder / "foreign.mov");
    test::runFfmpeg("-f lavfi -i sine=d=1", folder / "none.wav");
    fs::resize_file(folder / "none.wav", 20);
    const struct {
        const char* file;
        bool isReadable;
        bool hasPictures;
        bool hasSound;
    } movies[]{{"silent.mov", true, true, false}, {"heard.m4a", true, false, true},
               {"cut.mov", true, true, true},     {"foreign.mov", true, true, true},
               {"none.wav", false, false, false}, {"missing.mov", false, false, false}};
    for (const auto& movie : movies) {
        SCOPED_TRACE(movie.file);
        StripRig rig(folder / movie.file);
        rig.maker().look({.ticks = {0, 576}, .tolerance = 0});
        if (!movie.isReadable) {
            EXPECT_TRUE(test::eventually([&] { return rig.maker().hasEnded(); }));
            EXPECT_FALSE(rig.told().format);
            continue;
        }
        ASSERT_TRUE(rig.becomes([&](const auto& told) {
            return told.format && (!movie.hasPictures || told.thumbnails.size() == 2) &&
                   (!movie.hasSound || secondsOf(told.peaks) >= told.format->seconds);
        }));
        const auto told = rig.told();
        const auto format = told.format.value_or(StripFormat());
        EXPECT_EQ(format.thumbnailWidth > 0, movie.hasPictures);
        EXPECT_EQ(format.hasSound, movie.hasSound);
        if (movie.hasPictures) {
            EXPECT_NE(told.thumbnails.at(0).pixels, nullptr);
        }
    }
}

TEST(ThumbnailCache, keepsWhatWasUsedLastWithinItsBound) {
    const auto pixels = PixelBuffer::allocate(PixelFormat::bgra, 142, 80);
    ThumbnailCache cache;
    for (std::int64_t tick = 0; tick < 5000; ++tick) {
        cache.add({tick, tick, pixels});
        ASSERT_NE(cache.nearest(0, 0, 1), nullptr) << "one that is seen was dropped";
        ASSERT_LE(cache.bytes(), ThumbnailCache::usualBytes);
    }
    EXPECT_GT(cache.bytes(), ThumbnailCache::usualBytes / 10 * 9);
    EXPECT_FALSE(cache.has(1, 0));
    EXPECT_TRUE(cache.has(4999, 0));
    cache.add({4999, 4900, pixels});
    EXPECT_FALSE(cache.has(4999, 98));
    EXPECT_TRUE(cache.has(4999, 99));
    // All of it, with the sound of the longest movie that can be.
    const double longest = 30.0 * 24 * 3600;
    EXPECT_LE(cache.bytes() + Waveform(longest).bytes(), mostBytes);
    EXPECT_LE(Waveform(longest).bytes(), Waveform::mostBytes);
}

TEST(Waveform, answersAnyStretchLikeALookAtEachBucket) {
    constexpr std::int64_t count = 7201;
    Waveform waveform(count / 100.0);
    PeakPiece all{0, {}};
    for (std::int64_t i = 0; i < count; ++i)
        all.peaks.push_back(
            {static_cast<std::int8_t>(-(i * 37 % 101)), static_cast<std::int8_t>(i * 53 % 127)});
    EXPECT_TRUE(waveform.over(0, 72).isUnknown());
    for (std::int64_t first = 0; first < count; first += 1000) {
        const auto end = std::min(first + 1000, count);
        waveform.add({first, {all.peaks.begin() + first, all.peaks.begin() + end}});
    }
    for (std::int64_t first = 0; first < count; first += 271)
        for (auto end = first + 1; end <= count; end += 463) {
            Peak expected;
            for (auto i = first; i < end; ++i)
                expected.include(all.peaks[static_cast<std::size_t>(i)]);
            const auto peak =
                waveform.over(static_cast<double>(first) / 100, static_cast<double>(end) / 100);
            ASSERT_EQ(peak, expected) << first << " to " << end;
        }
}

} // namespace
} // namespace vantro::media::strips
