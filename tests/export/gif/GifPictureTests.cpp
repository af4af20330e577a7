// What a viewer sees, beside the pictures that were appended.

#include "export/gif/GifFixture.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace vantro::test {
namespace {

using Pictures = std::vector<std::shared_ptr<media::PixelBuffer>>;

/// A soft gradient from the left to the right and a fainter one downwards.
std::shared_ptr<media::PixelBuffer> gradient(int width, int height, int red, int green, int blue) {
    return picture(width, height, [&](int x, int y) {
        const int level = 40 + 170 * x / width;
        const int across = 60 * y / height;
        return packed(red * level / 255 + across / 2, green * level / 255 + across,
                      blue * level / 255 + across / 3);
    });
}

class GifPicture : public GifTest {
  protected:
    DecodedGif written(const Pictures& pictures) {
        exporting::gif::GifWriter writer(m_target, pictures[0]->width(), pictures[0]->height(),
                                         twelfth);
        for (const auto& frame : pictures)
            writer.append(*frame);
        writer.finish();
        return decodeGif(m_target);
    }
    /// The image on screen in the middle of a frame's time.
    static const DecodedGif::Image& shownAt(const DecodedGif& gif, std::size_t frame) {
        return gif.at(static_cast<int>((static_cast<double>(frame) + 0.5) * 100 / 12));
    }
};

TEST_F(GifPicture, fewColoursAreShownExactlyAtAnySize) {
    const std::pair<int, int> sizes[] = {{1, 1}, {1, 77}, {7, 5}, {333, 1}, {255, 129}, {640, 360}};
    for (const auto& [width, height] : sizes) {
        SCOPED_TRACE(testing::Message() << width << "x" << height);
        // Steps between shades are far above what counts as a change; noise fills dictionaries.
        std::minstd_rand random(7);
        Pictures pictures;
        for (int frame = 0; frame < 4; ++frame)
            pictures.push_back(picture(width, height, [&](int, int) {
                const auto shade = static_cast<int>(random() >> 8);
                return packed(shade % 6 * 51, shade / 6 % 6 * 51, shade / 36 % 6 * 51);
            }));
        const auto gif = written(pictures);
        ASSERT_EQ(gif.width, width);
        ASSERT_EQ(gif.height, height);
        for (std::size_t frame = 0; frame < pictures.size(); ++frame)
            EXPECT_EQ(largestError(shownAt(gif, frame), *pictures[frame]), 0) << frame;
    }
}

TEST_F(GifPicture, changingAreasAreExactWhereverTheyMeetStillOnes) {
    // Text-like marks that scroll: most pixels may be coded as transparent or as their colour.
    Pictures pictures;
    for (int frame = 0; frame < 40; ++frame)
        pictures.push_back(picture(301, 97, [&](int x, int y) {
            const int line = (y + frame * 3) / 12;
            const bool mark = (x * 7 + line * 13) % 11 < 4 && (y + frame * 3) % 12 < 7 && x > 20;
            return mark ? packed(20, 40 * (line % 5), 90) : 0xFFFFFF;
        }));
    const auto gif = written(pictures);
    for (std::size_t frame = 0; frame < pictures.size(); ++frame)
        ASSERT_EQ(largestError(shownAt(gif, frame), *pictures[frame]), 0) << frame;
}

TEST_F(GifPicture, movingPointerCostsFewBytesAndLeavesTheRestAlone) {
    const auto screen = [](int pointerX) {
        return picture(640, 360, [&](int x, int y) {
            const bool pointer = x >= pointerX && x < pointerX + 12 && y >= 200 && y < 219;
            return pointer ? 0x101010 : packed(x * 255 / 640, y * 255 / 360, 128);
        });
    };
    const auto bytesOfStill = written({screen(50)}).bytes;
    Pictures pictures;
    for (int frame = 0; frame < 24; ++frame)
        pictures.push_back(screen(50 + frame * 9));
    const auto gif = written(pictures);
    ASSERT_EQ(gif.images.size(), 24U);
    constexpr std::ptrdiff_t above = 640L * 200; // pixels over the pointer's rows
    EXPECT_LT(gif.bytes - bytesOfStill, 23U * 600U);
    for (std::size_t i = 1; i < gif.images.size(); ++i) {
        EXPECT_LE(gif.images[i].pixels, 21 * 19);
        // A dithered background must not crawl: away from the pointer no pixel moves.
        const auto& before = gif.images[i - 1].shown;
        EXPECT_TRUE(
            std::equal(before.begin(), before.begin() + above, gif.images[i].shown.begin()));
    }
}

TEST_F(GifPicture, suddenlyOtherColoursAreShownAsWellAsTheFirst) {
    const Pictures pictures{gradient(320, 180, 40, 60, 255), gradient(320, 180, 255, 120, 20),
                            gradient(320, 180, 30, 255, 90), gradient(320, 180, 40, 60, 255)};
    const auto gif = written(pictures);
    for (std::size_t frame = 0; frame < pictures.size(); ++frame) {
        EXPECT_LT(meanError(shownAt(gif, frame), *pictures[frame]), 1.5) << frame;
        EXPECT_LE(largestError(shownAt(gif, frame), *pictures[frame]), 16) << frame;
    }
}

TEST_F(GifPicture, slowFadeNeverFallsBehind) {
    constexpr int frames = 500;
    const auto faded = [](int frame) {
        return picture(64, 48, [&](int x, int y) {
            const int level = 20 + 200 * frame / frames;
            return packed(level, (level + x) % 256, (255 - level + y / 2) % 256);
        });
    };
    Pictures pictures;
    for (int frame = 0; frame < frames; ++frame)
        pictures.push_back(faded(frame));
    const auto gif = written(pictures);
    double worstMean = 0;
    int worst = 0;
    for (std::size_t frame = 0; frame < pictures.size(); ++frame) {
        worstMean = std::max(worstMean, meanError(shownAt(gif, frame), *pictures[frame]));
        worst = std::max(worst, largestError(shownAt(gif, frame), *pictures[frame]));
    }
    EXPECT_LT(worstMean, 3.0);
    EXPECT_LE(worst, 16);
}

TEST_F(GifPicture, faintNoiseInAStillPictureIsNotStored) {
    std::minstd_rand random(3);
    Pictures pictures;
    for (int frame = 0; frame < 50; ++frame)
        pictures.push_back(picture(160, 90, [&](int x, int) {
            const int level = 60 + x / 2 + static_cast<int>(random() >> 8 & 1);
            return packed(level, level, level);
        }));
    EXPECT_EQ(written(pictures).images.size(), 1U);
}

} // namespace
} // namespace vantro::test
