#include "capture/wayland/compositor/CursorSession.h"

#include <gtest/gtest.h>

namespace vantro::capture::wayland {
namespace {

TEST(CompositorOutput, OfAStreamIsTheOnlyOneOfItsSize) {
    const CompositorOutput left{.position = {0, 0}, .pixels = {1920, 1080}};
    const CompositorOutput right{.position = {1920, 0}, .pixels = {1920, 1080}};
    const CompositorOutput small{.position = {0, 1080}, .pixels = {800, 600}};
    using Found = std::optional<std::size_t>;
    const struct {
        const char* what;
        std::vector<CompositorOutput> outputs;
        std::optional<model::Point> position;
        Found found;
    } cases[] = {
        {"the only one", {left}, {}, Found(0)},
        {"by its size", {small, right}, {{1920, 0}}, Found(1)},
        {"a place that says nothing", {small, right}, {{0, 0}}, Found(1)},
        {"a place that is another's", {small, right}, {{0, 1080}}, {}},
        {"two alike", {left, right}, {{1920, 0}}, {}},
        {"none of that size", {small}, {}, {}},
    };
    for (const auto& each : cases) {
        PortalStream stream;
        stream.position = each.position;
        EXPECT_EQ(outputOf(stream, {1920, 1080}, each.outputs), each.found) << each.what;
    }
}

} // namespace
} // namespace vantro::capture::wayland
