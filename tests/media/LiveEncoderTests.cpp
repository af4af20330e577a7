// How recordings are encoded: the rate they keep to, and what each picture costs.
#include "media/av/EncoderSetup.h"
#include "media/av/LiveRate.h"
#include "media/av/SoftwareEncoder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace vantro::media {
namespace {

constexpr double bitRate = 50e6;

struct Span {
    double seconds;
    double interval;   // between pictures
    double difficulty; // of a picture, as times of what the rate allows at the finest quantizer
};

struct Scene {
    const char* name;
    std::vector<Span> spans;
    int coarsest;     // quantizer at the end
    double leastRate; // over all of it, as times of the rate
    double mostRate;
};

TEST(LiveRate, SpendsTheRateWherePicturesNeedItAndNoMore) {
    constexpr double frame = 1.0 / 60;
    const std::array scenes{
        Scene{"calm", {{30, frame, 0.5}}, av::finestQuantizer, 0.49, 0.51},
        Scene{"busy", {{30, frame, 12}}, 33, 0.97, 1.02},
        Scene{"few pictures", {{30, 0.1, 40}}, 43, 0.97, 1.05},
        // Two seconds' worth is saved up; about one more goes before the movement is noticed.
        Scene{"after long calm", {{60, frame, 0}, {20, frame, 12}}, 33, 0.245, 0.29},
        Scene{"at rest again", {{20, frame, 12}, {5, 5, 0}}, av::finestQuantizer, 0.7, 0.9},
    };
    for (const auto& scene : scenes) {
        SCOPED_TRACE(scene.name);
        av::LiveRate rate(bitRate);
        double time = 0;
        double bits = 0;
        for (const auto& span : scene.spans)
            for (auto left = std::lround(span.seconds / span.interval); left > 0; --left) {
                const int halvings = rate.quantizer(time) - av::finestQuantizer;
                ASSERT_GE(halvings, 0);
                const double picture =
                    span.difficulty * bitRate * span.interval * std::exp2(-halvings / 6.0);
                rate.encoded(static_cast<std::size_t>(picture / 8));
                bits += picture;
                time += span.interval;
            }
        EXPECT_LE(rate.quantizer(time), scene.coarsest);
        EXPECT_GE(bits, scene.leastRate * bitRate * time);
        EXPECT_LE(bits, scene.mostRate * bitRate * time);
    }
}

constexpr int width = 640;
constexpr int height = 368;

/// Fine noise, which nothing but motion predicts, seen through a window that moves down a page.
std::shared_ptr<PixelBuffer> pageAt(int top) {
    static const auto page = [] {
        std::vector<std::uint8_t> samples(static_cast<std::size_t>(width) * 4096);
        std::ranges::generate(samples, [random = std::mt19937(3)]() mutable {
            return static_cast<std::uint8_t>(16 + random() % 220);
        });
        return samples;
    }();
    auto picture = PixelBuffer::allocate(PixelFormat::i420, width, height);
    for (int y = 0; y < height; ++y)
        std::copy_n(page.data() + static_cast<std::ptrdiff_t>(top + y) * width, width,
                    picture->mutableRow(0, y));
    for (int plane = 1; plane < 3; ++plane)
        for (int y = 0; y < height / 2; ++y)
            std::fill_n(picture->mutableRow(plane, y), width / 2, std::uint8_t{128});
    return picture;
}

TEST(LiveEncoder, GivesEachPictureAtOnceAndFollowsAScrolledPageFromAKeyframeOn) {
    constexpr int scrolledBy = 12; // pixels from picture to picture
    constexpr int keyframeInterval = 10;
    auto session = av::openSoftwareEncoder(
        {.width = width, .height = height, .averageBitRate = 400'000'000, .expectsRealTime = true});
    const std::int64_t ticks = session.context().time_base.den / 60;
    std::size_t keyframeSize = 0;
    for (int number = 0; number < 40; ++number) {
        SCOPED_TRACE(number);
        const bool isKeyframe = number % keyframeInterval == 0;
        const auto frame = av::encoderFrame(pageAt(number * scrolledBy), number * ticks);
        frame->pict_type = isKeyframe ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;
        int packets = 0;
        ASSERT_TRUE(session.encode(frame.get(), [&](av::EncodedPacket& packet) {
            ++packets;
            const auto size = static_cast<std::size_t>(packet.raw().size);
            EXPECT_EQ(packet.shownAt(), number * ticks);
            EXPECT_EQ(packet.decodedAt(), number * ticks);
            EXPECT_EQ((packet.raw().flags & AV_PKT_FLAG_KEY) != 0, isKeyframe);
            keyframeSize = isKeyframe ? size : keyframeSize;
            EXPECT_TRUE(isKeyframe || size < keyframeSize / 2);
        }));
        EXPECT_EQ(packets, 1);
    }
}

} // namespace
} // namespace vantro::media
