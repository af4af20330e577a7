#include "editor/ExportRules.h"

#include <gtest/gtest.h>

namespace vantro::editor {
namespace {

TEST(ExportRules, AnEstimateFollowsTheEdit) {
    ExportMeasure measure{.edit = {},
                          .sourceDuration = 60,
                          .sourceBytes = 1'000'000,
                          .videoSize = {1280, 720},
                          .hasSound = true};
    const auto resting = estimatedBytes(measure);
    measure.edit.clickEvents = {{{.timestamp = 10}, {.timestamp = 40}}};
    const auto whole = estimatedBytes(measure);
    EXPECT_GT(whole, resting + 4'000'000) << "the camera moves for some 4 s";
    measure.edit.segments = {{{.startFraction = 0, .endFraction = 0.5, .speed = 2}}};
    EXPECT_NEAR(static_cast<double>(estimatedBytes(measure)), static_cast<double>(whole) / 4,
                static_cast<double>(whole) / 100)
        << "half of the film, with half of its zooms, twice as fast";
    measure.videoSize = {};
    EXPECT_EQ(estimatedBytes(measure), 0U) << "nothing is known";
}

} // namespace
} // namespace vantro::editor
