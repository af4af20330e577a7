#include "media/av/encode/EncoderSetup.h"
#include "media/av/encode/LiveRate.h"

#include <array>
#include <cmath>
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

} // namespace
} // namespace vantro::media
