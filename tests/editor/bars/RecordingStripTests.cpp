#include "editor/bars/StripTiles.h"
#include "support/Ffmpeg.h"
#include "window/Contrast.h"
#include "window/WindowFixture.h"

namespace vantro::editor::bars {
namespace {

using media::strips::ticksPerSecond;

/// A recording of four seconds, red, green, blue and white, with a tone from 2 to 2.5 s.
class RecordingStripTest : public test::WindowFixture {
  protected:
    void open() {
        const auto picture = files.filePath(QStringLiteral("picture.mov")).toStdString();
        const auto movie = files.filePath(QStringLiteral("shown.mov")).toStdString();
        test::writeColorClock(picture, 320, 180, 10, 4);
        test::runFfmpeg("-i picture.mov -f lavfi -i \"aevalsrc='0.9*sin(2*PI*700*t)*"
                        "between(t,2,2.5)':s=48000:d=4\" -c:v copy -c:a aac",
                        movie);
        showWindow();
        showEditor();
        ASSERT_TRUE(QTest::qWaitFor([this] { return preview.transport()->duration() > 0; }));
        ASSERT_TRUE(QTest::qWaitFor([this] { return actions.strip()->hasSound(); }));
    }
    /// What stands on the bar at a second, `y` points below its top.
    QColor at(double seconds, double y) {
        auto& bar = item("strip");
        const double x = actions.timeline()->axis().xOf(seconds / 4);
        return window().grabWindow().pixelColor(bar.mapToScene({x, y}).toPoint());
    }
    QColor pictureAt(double seconds) { return at(seconds, 6); }
    bool isLoudAt(double seconds) {
        return test::luminance(at(seconds, item("strip").height() - 4)) > 0.1;
    }
    /// The channel that is bright in the recording's picture of a second; 3 for white.
    static int leading(QColor color) {
        const std::array channels{color.red(), color.green(), color.blue()};
        const auto [low, high] = std::ranges::minmax(channels);
        if (high - low < 30)
            return 3;
        return static_cast<int>(std::ranges::max_element(channels) - channels.begin());
    }
    bool becomes(double seconds, int channel) {
        return QTest::qWaitFor([&] { return leading(pictureAt(seconds)) == channel; });
    }
};

TEST_F(RecordingStripTest, PicturesAndSoundStandAtTheirTimesWhateverPartIsSeen) {
    open();
    for (const int second : {0, 1, 2, 3})
        EXPECT_TRUE(becomes(second + 0.5, second)) << second;
    EXPECT_TRUE(QTest::qWaitFor([this] { return isLoudAt(2.25); }));
    for (const double quiet : {0.5, 1.9, 2.6, 3.5})
        EXPECT_FALSE(isLoudAt(quiet)) << quiet;
    auto& timeline = *actions.timeline();
    timeline.magnify(8, timeline.axis().xOf(0.5));
    // The exact pictures now, on either side of their change.
    EXPECT_TRUE(becomes(1.93, 1)) << pictureAt(1.93).name().toStdString();
    EXPECT_TRUE(becomes(2.07, 2)) << pictureAt(2.07).name().toStdString();
    EXPECT_FALSE(isLoudAt(1.97));
    EXPECT_TRUE(isLoudAt(2.03));
    timeline.scrollTo(0.6);
    EXPECT_TRUE(becomes(2.85, 2));
    EXPECT_TRUE(isLoudAt(2.47));
    EXPECT_FALSE(isLoudAt(2.53));
}

TEST_F(RecordingStripTest, TextAndHandlesStandOutFromWhitePicturesToo) {
    open();
    ASSERT_TRUE(becomes(3.5, 3));
    for (const bool selected : {false, true}) {
        if (selected)
            state.setSelectedSegmentID(state.segments()[0].id);
        settle();
        EXPECT_GT(pictureAt(3.5).lightness(), 80) << "it is a picture still";
        for (const char* color : {"timelineHandle", "timelineInk"})
            EXPECT_GE(test::contrast(pictureAt(3.5), themeColor(color)), 4.5) << color << selected;
    }
}

TEST_F(RecordingStripTest, AnotherRecordingLeavesNothingOfTheOneBefore) {
    open();
    ASSERT_TRUE(becomes(0.5, 0));
    state.show(test::plainProject("/missing/movie.mov", 10));
    EXPECT_FALSE(actions.strip()->hasPictures());
    EXPECT_FALSE(actions.strip()->hasSound());
    EXPECT_EQ(actions.strip()->picture({.tick = 0, .spread = 256}), nullptr);
    EXPECT_TRUE(actions.strip()->peak(0, 4).isUnknown());
}

TEST(StripTiles, FillEveryViewWithPicturesOfTimesThatTheyCover) {
    for (const double seconds : {13.0, 61.7, 7200.0})
        for (const double span : {1.0, 0.37, 0.02})
            for (const double start : {0.0, 0.3, 1 - span}) {
                SCOPED_TRACE(testing::Message() << seconds << " " << span << " " << start);
                const timeline::TimeAxis axis{std::min(start, 1 - span), span, 1200};
                const auto tiles = StripTiles::of(axis, seconds, 71).tiles;
                ASSERT_LE(tiles.size(), 1200 / 71 + 2U);
                ASSERT_LE(tiles.front().x, 1e-6);
                EXPECT_GE(tiles.back().x + 71, 1200 - 1e-6);
                for (std::size_t i = 0; i < tiles.size(); ++i) {
                    const double begin = tiles[i].x;
                    if (i > 0) {
                        EXPECT_NEAR(begin, tiles[i - 1].x + 71, 1e-6);
                    }
                    const double tick = static_cast<double>(tiles[i].tick) / ticksPerSecond;
                    const double shown = axis.xOf(tick / seconds);
                    const double finest = 1200 / (span * seconds * ticksPerSecond);
                    EXPECT_LT(shown, begin + std::max(71.0, finest) + 1e-6);
                    EXPECT_TRUE(shown >= begin - 1e-6 || i + 1 == tiles.size());
                }
            }
    EXPECT_TRUE(StripTiles::of({}, 4, 71).tiles.empty());
    EXPECT_TRUE(StripTiles::of({.width = 1200}, 0, 71).tiles.empty());
    EXPECT_TRUE(StripTiles::of({.width = 1200}, 4, 0).tiles.empty());
}

} // namespace
} // namespace vantro::editor::bars
