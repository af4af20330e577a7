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
    const auto whole = estimatedBytes(measure);
    measure.edit.segments = {{{.startFraction = 0, .endFraction = 0.5, .speed = 2}}};
    EXPECT_NEAR(static_cast<double>(estimatedBytes(measure)), static_cast<double>(whole) / 4, 2);
    measure.videoSize = {};
    EXPECT_EQ(estimatedBytes(measure), 0U) << "nothing is known";
}

} // namespace
} // namespace vantro::editor
