// What a viewer sees, beside the pictures that were appended, and when.

#include "export/gif/GifFixture.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>
namespace vantro::test {
namespace {

using Pictures = std::vector<std::shared_ptr<media::PixelBuffer>>;

template <typename PictureOf>
Pictures frames(int count, PictureOf pictureOf) {
    Pictures pictures;
    for (int frame = 0; frame < count; ++frame)
        pictures.push_back(pictureOf(frame));
    return pictures;
}

std::shared_ptr<media::PixelBuffer> flat(int width, int height, int color) {
    return picture(width, height, [&](int, int) { return color; });
}

struct Difference {
    int largest = 0;
    double mean = 0;
};

Difference difference(const media::PixelBuffer& shown, const media::PixelBuffer& expected) {
    Difference found;
    for (int y = 0; y < expected.height(); ++y)
        for (int i = 0; i < expected.width() * 4; ++i) {
            const int error = std::abs(shown.row(0, y)[i] - expected.row(0, y)[i]);
            found.largest = std::max(found.largest, error);
            found.mean += error / (3.0 * expected.width() * expected.height());
        }
    return found;
}

class GifPicture : public GifTest {
  protected:
    PlayedGif written(const Pictures& pictures) {
        exporting::gif::GifWriter writer(m_target, pictures[0]->width(), pictures[0]->height(),
                                         twelfth);
        for (const auto& frame : pictures)
            writer.append(*frame);
        writer.finish();
        return PlayedGif(m_target);
    }
    void expectExact(const Pictures& pictures) {
        auto gif = written(pictures);
        for (std::size_t frame = 0; frame < pictures.size(); ++frame) {
            const auto shown = shownAt(gif, frame);
            ASSERT_EQ(shown->width(), pictures[0]->width());
            ASSERT_EQ(shown->height(), pictures[0]->height());
            EXPECT_EQ(difference(*shown, *pictures[frame]).largest, 0)
                << shown->width() << "x" << shown->height() << ", " << frame;
        }
    }
    /// The image on screen in the middle of a frame's time.
    static std::shared_ptr<const media::PixelBuffer> shownAt(PlayedGif& gif, std::size_t frame) {
        return gif.at(static_cast<int>((static_cast<double>(frame) + 0.5) * 100 / 12));
    }
};

TEST_F(GifPicture, ShowsFewColorsExactlyAtAnySize) {
    const std::pair<int, int> sizes[] = {{1, 1}, {1, 77}, {7, 5}, {333, 1}, {255, 129}, {640, 360}};
    for (const auto& [width, height] : sizes) {
        // Steps between shades are far above what counts as a change; noise fills
        // dictionaries.
        std::minstd_rand random(7);
        expectExact(frames(4, [&](int) {
            return picture(width, height, [&](int, int) {
                const auto shade = static_cast<int>(random() >> 8);
                return packed(shade % 6 * 51, shade / 6 % 6 * 51, shade / 36 % 6 * 51);
            });
        }));
    }
}

TEST_F(GifPicture, ShowsChangingAreasExactlyWhereverTheyMeetStillOnes) {
    // Text-like marks that scroll: most pixels may be coded as transparent or as
    // their color.
    expectExact(frames(40, [](int frame) {
        return picture(301, 97, [&](int x, int y) {
            const int line = (y + frame * 3) / 12;
            const bool mark = (x * 7 + line * 13) % 11 < 4 && (y + frame * 3) % 12 < 7 && x > 20;
            return mark ? packed(20, 40 * (line % 5), 90) : 0xFFFFFF;
        });
    }));
}

TEST_F(GifPicture, SpendsFewBytesOnAMovingPointerAndLeavesTheRestAlone) {
    const auto screen = [](int pointerX) {
        return picture(640, 360, [&](int x, int y) {
            const bool pointer = x >= pointerX && x < pointerX + 12 && y >= 200 && y < 219;
            return pointer ? 0x101010 : packed(x * 255 / 640, y * 255 / 360, 128);
        });
    };
    const auto bytesOfStill = written({screen(50)}).bytes();
    auto gif = written(frames(24, [&](int frame) { return screen(50 + frame * 9); }));
    ASSERT_EQ(gif.delays().size(), 24U);
    EXPECT_LT(gif.bytes() - bytesOfStill, 23U * 600U);
    // A dithered background must not crawl: away from the pointer no pixel moves.
    const auto first = shownAt(gif, 0);
    for (std::size_t frame = 1; frame < 24; ++frame)
        for (int y = 0; y < 200; ++y)
            EXPECT_EQ(std::memcmp(shownAt(gif, frame)->row(0, y), first->row(0, y), 640 * 4), 0);
}

TEST_F(GifPicture, FollowsSlowFadesAndSuddenlyOtherColors) {
    constexpr int count = 500;
    auto pictures = frames(count, [](int frame) {
        return picture(64, 48, [&](int x, int y) {
            const int level = 20 + 200 * frame / count;
            return packed(level, (level + x) % 256, (255 - level + y / 2) % 256);
        });
    });
    for (const int tint : {0x283CFF, 0xFF7814, 0x1EFF5A}) // soft gradients of one hue each
        pictures.push_back(picture(64, 48, [&](int x, int y) {
            const int level = 40 + 170 * x / 64;
            const int across = 60 * y / 48;
            return packed((tint >> 16) * level / 255 + across / 2,
                          (tint >> 8 & 255) * level / 255 + across,
                          (tint & 255) * level / 255 + across / 3);
        }));
    auto gif = written(pictures);
    for (std::size_t frame = 0; frame < pictures.size(); ++frame) {
        const auto found = difference(*shownAt(gif, frame), *pictures[frame]);
        EXPECT_LT(found.mean, 3.0) << frame;
        EXPECT_LE(found.largest, 16) << frame;
    }
}

TEST_F(GifPicture, DoesNotStoreFaintNoiseInAStillPicture) {
    std::minstd_rand random(3);
    const auto pictures = frames(50, [&](int) {
        return picture(160, 90, [&](int x, int) {
            const int level = 60 + x / 2 + static_cast<int>(random() >> 8 & 1);
            return packed(level, level, level);
        });
    });
    EXPECT_EQ(written(pictures).delays().size(), 1U);
}

TEST_F(GifPicture, KeepsTimeWhateverTheRoundingOfSingleFrames) {
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

TEST_F(GifPicture, KeepsPausesLongerThanADelayCanSay) {
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
