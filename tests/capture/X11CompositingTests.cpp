// Recordings of desktops whose windows a real compositing manager blends.
#include "capture/RunningStream.h"
#include "support/Program.h"
#include "support/TestWindow.h"

#include <algorithm>
#include <optional>

#include <gtest/gtest.h>

namespace vantro::capture {
namespace {

using namespace std::chrono_literals;
using test::CompositingManager;
using test::RunningStream;
using test::TestWindow;
using test::XServer;
using namespace test::colors;

const test::TestWindow::Names ours{
    .title = {}, .applicationClass = {}, .process = test::ownProcess};

class UnderACompositingManager : public testing::TestWithParam<const char*> {};

TEST_P(UnderACompositingManager, NeitherShadowsNorTheFadingOfOwnWindowsShow) {
    const test::XServer server;
    const test::CompositingManager manager(server, GetParam());
    test::TestWindow ground(server, {0, 0, 640, 480}, white);
    test::TestWindow other(server, {20, 20, 40, 40}, red);
    test::RunningStream running(server);
    ASSERT_TRUE(running.awaitLatestColor(320, 240, white)); // it has faded in
    const auto first = running.collector.samples().size();
    // A manager that is busy fading misses what is drawn meanwhile: draws until it shows.
    const auto showsAs = [&](std::uint32_t color) {
        return test::eventually([&] {
            other.fill(color);
            const auto latest = running.collector.latest();
            return test::hasColor(*latest, 40, 40, color);
        });
    };
    for (int round = 0; round < 3; ++round) {
        test::TestWindow own(server, {200, 200, 200, 100}, blue, ours);
        ASSERT_TRUE(showsAs(green));
        own.close();
        ASSERT_TRUE(showsAs(red));
    }
    const auto start = base::hostNow(); // until all has faded, and longer
    for (std::uint32_t step = 0; base::hostNow() - start < 700ms; ++step)
        other.fill(step % 2 == 0 ? green : red);
    const auto samples = running.collector.samples();
    for (auto index = first; index < samples.size(); ++index)
        for (int y = 150; y < 350; y += 10)
            for (int x = 150; x < 450; x += 10)
                ASSERT_TRUE(test::hasColor(*samples[index].pixels, x, y, white)) << x << ", " << y;
}

TEST_P(UnderACompositingManager, OwnWindowsStayOutWhenItStartsAndStopsInBetween) {
    const test::XServer server;
    test::TestWindow lower(server, {0, 0, 640, 480}, red);
    test::TestWindow upper(server, {100, 100, 200, 200}, green);
    test::TestWindow own(server, {50, 50, 300, 300}, white, ours);
    test::RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(200, 200, green));
    std::optional<test::CompositingManager> manager;
    for (int round = 0; round < 3; ++round) {
        for (const bool isComposited : {true, false}) {
            if (isComposited)
                manager.emplace(server, GetParam());
            else
                manager.reset();
            const auto color = isComposited ? blue : green;
            upper.fill({80, 80, 10, 10}, color); // hidden
            lower.fill({500, 400, 10, 10}, color);
            ASSERT_TRUE(running.awaitLatestColor(184, 184, color));
            ASSERT_TRUE(running.awaitLatestColor(504, 404, color));
        }
        own.place({50 + 10 * round, 50, 300, 300});
    }
    const auto last = running.collector.samples().back().pixels;
    EXPECT_TRUE(test::hasColor(*last, 70, 70, red));
    for (const auto& [x, y] : {std::pair{76, 54}, {200, 200}, {340, 340}})
        EXPECT_FALSE(running.everHadColor(x, y, white)) << x << ", " << y;
}

TEST_P(UnderACompositingManager, AWindowThatItBlendsIsBlendedBeneathOwnWindowsToo) {
    const test::XServer server;
    const test::TestWindow ground(server, {0, 0, 640, 480}, 0x000000);
    // Half of a light green.
    test::TestWindow veil(server, {100, 100, 400, 200}, 0x80206040, {.isBlended = true});
    const test::TestWindow patch(server, {0, 0, 300, 150}, blue);
    test::TestWindow own(server, {50, 50, 300, 300}, white, ours);
    veil.raise();
    own.raise();
    test::RunningStream running(server);
    constexpr std::uint32_t veiled = 0x2777af; // 0x206040 and 127/255 of blue
    constexpr std::uint32_t opaque = 0x206040; // as the screen shows it without a manager
    ASSERT_TRUE(running.awaitColor(200, 200, opaque));
    std::optional<test::CompositingManager> manager(std::in_place, server, GetParam());
    ASSERT_TRUE(running.awaitLatestColor(200, 120, veiled));
    ASSERT_TRUE(running.awaitLatestColor(400, 120, opaque)) << "over black, in view";
    manager.reset();
    ASSERT_TRUE(running.awaitLatestColor(200, 120, opaque));
    EXPECT_FALSE(running.everHadColor(200, 200, white));
}

TEST_P(UnderACompositingManager, ACoveredWindowIsRecordedWhetherItRunsOrNot) {
    const test::XServer server;
    test::TestWindow window(server, {500, 300, 300, 250}, red);
    const test::TestWindow cover(server, {520, 320, 400, 400}, green);
    std::optional<test::CompositingManager> manager(std::in_place, server, GetParam());
    test::RunningStream running(server, test::windowRequest(window));
    ASSERT_TRUE(running.awaitColor(100, 100, red));
    window.fill({200, 200, 20, 20}, blue);
    ASSERT_TRUE(running.awaitColor(210, 210, blue));
    manager.reset();
    window.fill({200, 200, 20, 20}, white);
    ASSERT_TRUE(running.awaitColor(210, 210, white));
    manager.emplace(server, GetParam());
    window.place({10, 10, 300, 250});
    window.fill({100, 100, 20, 20}, blue);
    ASSERT_TRUE(running.awaitColor(110, 110, blue));
    EXPECT_FALSE(running.everHadColor(150, 150, green));
}

INSTANTIATE_TEST_SUITE_P(Real, UnderACompositingManager, testing::Values("picom", "xcompmgr"),
                         [](const auto& name) { return std::string(name.param); });

} // namespace
} // namespace vantro::capture
