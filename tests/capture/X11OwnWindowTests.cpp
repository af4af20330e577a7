// Our own windows stay out of screen and area recordings, also where a real compositing manager
// blends windows.
#include "capture/LesserServers.h"
#include "capture/RunningStream.h"
#include "support/Program.h"

#include <optional>

namespace vantro::capture {
namespace {

using namespace std::chrono_literals;
using namespace test::colors;
using test::ours;

/// What a server may lack.
class OwnWindowsOn : public testing::TestWithParam<test::MissingExtensions> {};

TEST_P(OwnWindowsOn, ShowWhatLiesBeneathThemFromTheFirstFrameOn) {
    const test::XServer server({.missingExtensions = GetParam()});
    test::TestWindow lower(server, {0, 0, 640, 240}, red);
    test::TestWindow upper(server, {100, 100, 200, 200}, green);
    const test::TestWindow own(server, {50, 50, 300, 300}, white, ours);
    test::TestWindow above(server, {60, 60, 20, 20}, blue);
    test::RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(200, 200, green));
    upper.fill({80, 80, 10, 10}, blue);
    lower.fill({300, 70, 10, 10}, green);
    ASSERT_TRUE(running.collector.awaitSample([](const ScreenSample& sample) {
        return test::hasColor(*sample.pixels, 184, 184, blue) &&
               test::hasColor(*sample.pixels, 304, 74, green);
    }));
    above.fill(green);
    ASSERT_TRUE(running.awaitColor(70, 70, green));
    const auto last = running.collector.samples().back().pixels;
    EXPECT_TRUE(test::hasColor(*last, 90, 60, red));
    EXPECT_TRUE(test::hasColor(*last, 60, 300, black)) << "the root's own background";
    upper.shape({{0, 0, 100, 200}, {100, 150, 100, 50}}); // a corner is cut out
    ASSERT_TRUE(running.awaitLatestColor(250, 150, red));
    EXPECT_TRUE(running.awaitLatestColor(250, 270, green));
    for (const auto& [x, y] : {std::pair{54, 54}, {200, 200}, {340, 340}, {320, 70}})
        EXPECT_FALSE(running.everHadColor(x, y, white)) << x << ", " << y;
}

INSTANTIATE_TEST_SUITE_P(Servers, OwnWindowsOn, test::usualServers(), test::nameOf);

TEST(OwnWindows, NeverShowHoweverTheyAndOthersComeAndChangeAndGo) {
    const test::XServer server;
    test::TestWindow ground(server, {0, 0, 640, 480}, red);
    test::TestWindow other(server, {150, 150, 200, 200}, green);
    test::RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(10, 10, red));
    for (int step = 0; step < 40; ++step) {
        test::TestWindow own(server, {100, 100, 300, 300}, white, ours);
        own.lower();
        own.shape({{0, 0, 300, 50 + 5 * step}, {100, 0, 20 + 4 * step, 300}});
        own.raise();
        other.shape({{0, 0, 200, 200 - 4 * step}});
        other.place({150 + 2 * step, 150, 200, 200}); // not between two halves of a chroma sample
        other.raise();
        own.raise();
        own.place({100 + step, 110, 300 - step, 290});
        const auto color = step % 8 == 0 ? blue : green;
        ground.fill({10, 10, 10, 10}, color);
        ASSERT_TRUE(step % 4 != 0 || running.awaitLatestColor(14, 14, color));
    }
    for (const auto& sample : running.collector.samples())
        for (int y = 100; y < 400; y += 20)
            for (int x = 100; x < 420; x += 20)
                ASSERT_TRUE(test::hasColor(*sample.pixels, x, y, red) ||
                            test::hasColor(*sample.pixels, x, y, green))
                    << x << ", " << y;
}

TEST(OwnWindows, AreThoseOfThisProcessUnlessATestSaysOtherwise) {
    const test::XServer server;
    const test::TestWindow window(server, {0, 0, 640, 480}, red);
    const auto content = x11::connectX11(server.display()).value()->shareableContent().value();
    EXPECT_EQ(content.windows.at(0).bundleIdentifier, ownBundleIdentifier);
}

TEST(OwnWindows, DoNotMakeAScreenThatRestsElsewhereCostFrames) {
    const test::XServer server;
    const test::TestWindow ground(server, {0, 0, 640, 480}, red);
    test::TestWindow own(server, {100, 100, 200, 200}, white, ours);
    test::RunningStream running(server);
    ASSERT_TRUE(running.awaitColor(200, 200, red));
    const auto before = running.collector.samples().size();
    for (int step = 0; step < 50; ++step)
        own.fill(0x010101U * static_cast<std::uint32_t>(step));
    const test::XServer other; // starting it takes a while
    EXPECT_LE(running.collector.samples().size(), before + 1);
}

class OwnWindowsUnder : public testing::TestWithParam<const char*> {};

TEST_P(OwnWindowsUnder, ShowNeitherTheirShadowsNorTheirFading) {
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
            return test::hasColor(*running.collector.samples().back().pixels, 40, 40, color);
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

TEST_P(OwnWindowsUnder, LetTheWindowsBeneathBeBlended) {
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

INSTANTIATE_TEST_SUITE_P(CompositingManagers, OwnWindowsUnder, testing::Values("picom", "xcompmgr"),
                         [](const auto& name) { return std::string(name.param); });

} // namespace
} // namespace vantro::capture
