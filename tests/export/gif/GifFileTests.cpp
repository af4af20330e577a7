// The file as a whole: pace, length, loop, what failures leave behind.

#include "export/gif/GifFixture.h"

namespace vantro::test {
namespace {

std::shared_ptr<media::PixelBuffer> flat(int width, int height, int color) {
    return picture(width, height, [&](int, int) { return color; });
}

using GifFile = GifTest;

TEST_F(GifFile, KeepsTimeWhateverTheRoundingOfSingleFrames) {
    exporting::gif::GifWriter writer(m_target, 4, 4, twelfth);
    for (int frame = 0; frame < 100; ++frame)
        writer.append(*flat(4, 4, frame % 2 == 0 ? 0xFFFFFF : 0x203040));
    writer.finish();
    const PlayedGif gif(m_target);
    ASSERT_EQ(gif.delays().size(), 100U);
    EXPECT_TRUE(gif.loopsForEver());
    int shownUntil = 0;
    int frame = 0;
    for (const int delay : gif.delays()) {
        shownUntil += delay;
        EXPECT_NEAR(shownUntil, ++frame * 100 / 12.0, 0.5);
    }
}

TEST_F(GifFile, KeepsPausesLongerThanADelayCanSay) {
    constexpr int frames = 12 * 60 * 25; // 25 minutes
    exporting::gif::GifWriter writer(m_target, 3, 2, twelfth);
    const auto still = flat(3, 2, 0x8899AA);
    for (int frame = 0; frame < frames; ++frame)
        writer.append(*still);
    writer.append(*flat(3, 2, 0x000000));
    writer.finish();
    PlayedGif gif(m_target);
    EXPECT_EQ(gif.totalDelay(), 25 * 60 * 100 + 8);
    EXPECT_EQ(gif.at(25 * 60 * 100 - 1)->row(0, 1)[0], 0xAA);
    EXPECT_EQ(gif.at(25 * 60 * 100)->row(0, 1)[0], 0);
}

} // namespace
} // namespace vantro::test
