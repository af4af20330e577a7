// What a viewer sees, beside the pictures that were appended.

#include "export/gif/GifFixture.h"

#include <algorithm>
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
    void expectExact(const Pictures& pictures) {
        const auto gif = written(pictures);
        ASSERT_EQ(gif.width, pictures[0]->width());
        ASSERT_EQ(gif.height, pictures[0]->height());
        for (std::size_t frame = 0; frame < pictures.size(); ++frame)
            EXPECT_EQ(largestError(shownAt(gif, frame), *pictures[frame]), 0)
                << gif.width << "x" << gif.height << ", " << frame;
    }
    /// The image on screen in the middle of a frame's time.
    static const DecodedGif::Image& shownAt(const DecodedGif& gif, std::size_t frame) {
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
    const auto bytesOfStill = written({screen(50)}).bytes;
    const auto gif = written(frames(24, [&](int frame) { return screen(50 + frame * 9); }));
    ASSERT_EQ(gif.images.size(), 24U);
    constexpr std::ptrdiff_t above = 640L * 200; // pixels over the pointer's rows
    EXPECT_LT(gif.bytes - bytesOfStill, 23U * 600U);
    for (std::size_t i = 1; i < gif.images.size(); ++i) {
        EXPECT_LE(gif.images[i].pixels, 21 * 19);
        // A dithered background must not crawl: away from the pointer no pixel
        // moves.
        const auto& before = gif.images[i - 1].shown;
        EXPECT_TRUE(
            std::equal(before.begin(), before.begin() + above, gif.images[i].shown.begin()));
    }
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
    const auto gif = written(pictures);
    for (std::size_t frame = 0; frame < pictures.size(); ++frame) {
        EXPECT_LT(meanError(shownAt(gif, frame), *pictures[frame]), 3.0) << frame;
        EXPECT_LE(largestError(shownAt(gif, frame), *pictures[frame]), 16) << frame;
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
    EXPECT_EQ(written(pictures).images.size(), 1U);
}

} // namespace
} // namespace vantro::test
