#include "capture/wayland/CursorSession.h"

#include <gtest/gtest.h>

namespace vantro::capture::wayland {
namespace {

TEST(CompositorOutput, OfAStreamIsTheOnlyOneThatFitsAllThatIsKnown) {
    const CompositorOutput left{.name = "A", .position = {0, 0}, .pixels = {1920, 1080}};
    const CompositorOutput right{.name = "B", .position = {1920, 0}, .pixels = {1920, 1080}};
    const CompositorOutput small{.name = "C", .position = {0, 1080}, .pixels = {800, 600}};
    const CompositorOutput mirror{.name = "D", .position = {1920, 0}, .pixels = {1920, 1080}};
    using Found = std::optional<std::size_t>;
    const struct {
        const char* what;
        std::vector<CompositorOutput> outputs;
        const char* id;
        std::optional<model::Point> position;
        Found found;
    } cases[] = {
        {"the only one", {left}, "", {}, Found(0)},
        {"by its size", {small, left}, "", {{0, 0}}, Found(1)},
        {"by its place", {left, right, small}, "", {{1920, 0}}, Found(1)},
        {"by its name", {left, right}, "B", {{0, 0}}, Found(1)},
        {"a place that says nothing", {left, right}, "", {{0, 0}}, {}},
        {"no place", {left, right}, "x", {}, {}},
        {"a place that is another's", {left, small}, "", {{0, 1080}}, {}},
        {"two in one place", {right, mirror}, "", {{1920, 0}}, {}},
        {"the right name, another size", {small}, "C", {}, {}},
        {"no screens", {}, "A", {}, {}},
    };
    for (const auto& each : cases) {
        PortalStream stream;
        stream.id = each.id;
        stream.position = each.position;
        EXPECT_EQ(outputOf(stream, {1920, 1080}, each.outputs), each.found) << each.what;
    }
}

} // namespace
} // namespace vantro::capture::wayland
