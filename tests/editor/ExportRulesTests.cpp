#include "editor/ExportRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::editor {
namespace {

/// Films that were made of real recordings, and what they took.
TEST(ExportRules, EstimatesAreWithinAFactorOfTwoOfWhatWasMeasured) {
    using exporting::ExportResolution;
    using media::VideoQuality;
    struct Film {
        double seconds;
        std::uint64_t sourceBytes;
        bool isGif;
        ExportResolution resolution;
        VideoQuality quality;
        std::uint64_t bytes;
    };
    for (const auto& [seconds, sourceBytes, isGif, resolution, quality, bytes] :
         std::initializer_list<Film>{
             {5.0, 1'856'699, false, ExportResolution::original, VideoQuality::fast, 4'552'198},
             {5.0, 1'856'699, false, ExportResolution::hd720, VideoQuality::fast, 2'490'119},
             {5.0, 1'856'699, true, ExportResolution::original, VideoQuality::fast, 3'726'343},
             {10.0, 4'631'262, false, ExportResolution::original, VideoQuality::fast, 25'677'003},
             {10.0, 4'631'262, false, ExportResolution::original, VideoQuality::small, 22'932'741},
             {10.0, 4'631'262, true, ExportResolution::original, VideoQuality::fast, 3'249'621},
             {10.0, 7'619'660, false, ExportResolution::original, VideoQuality::fast, 26'525'939},
             {10.0, 7'619'660, true, ExportResolution::original, VideoQuality::fast, 3'676'320}}) {
        const auto estimate = static_cast<double>(estimatedBytes({.edit = {},
                                                                  .sourceDuration = seconds,
                                                                  .sourceBytes = sourceBytes,
                                                                  .videoSize = {1920, 1080},
                                                                  .isGif = isGif,
                                                                  .resolution = resolution,
                                                                  .quality = quality}));
        EXPECT_THAT(estimate / static_cast<double>(bytes),
                    testing::AllOf(testing::Gt(0.5), testing::Lt(2)))
            << bytes;
    }
}

TEST(ExportRules, AnEstimateFollowsTheEdit) {
    ExportMeasure measure{.edit = {},
                          .sourceDuration = 60,
                          .sourceBytes = 1'000'000,
                          .videoSize = {1280, 720},
                          .hasSound = true};
    const auto whole = estimatedBytes(measure);
    measure.edit.segments = {{{.startFraction = 0, .endFraction = 0.5, .speed = 2}}};
    EXPECT_NEAR(static_cast<double>(estimatedBytes(measure)), static_cast<double>(whole) / 4, 2);
    measure.videoSize = {};
    EXPECT_EQ(estimatedBytes(measure), 0U) << "nothing is known";
}

TEST(ExportRules, TheTimeLeftIsToldOnceItCanBe) {
    EXPECT_FALSE(secondsLeft(0.5, 0.2));
    EXPECT_FALSE(secondsLeft(0.001, 20));
    EXPECT_DOUBLE_EQ(*secondsLeft(0.25, 10), 30);
    EXPECT_DOUBLE_EQ(*secondsLeft(1.2, 10), 0);
}

} // namespace
} // namespace vantro::editor
