// Recordings of a real compositor through the genuine portal and the part of it for wlroots.
#include "capture/wayland/PortalFixture.h"
#include "support/SwayDesk.h"

namespace vantro::capture::wayland {
namespace {

using namespace test;
using ::testing::HasSubstr;

constexpr std::uint32_t emptyDesktop = 0x404040;

class SwayRecording : public PortalFixture {
  protected:
    void SetUp() override {
        if (!SwayDesk::isInstalled() || !SwayDesk::hasPortal())
            GTEST_SKIP() << "sway or xdg-desktop-portal-wlr is not installed";
        PortalFixture::SetUp();
        sway = std::make_unique<SwayDesk>(*desk);
    }

    std::unique_ptr<SwayDesk> sway;
};

/// That portal sends no picture before the screen changes, and one that it was asked for earlier
/// may get the first.
TEST_F(SwayRecording, OfAScreenOnWhichNothingChangesBeginsEachTime) {
    sway->startPortal("HEADLESS-2");
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        begin();
        end();
        session.reset();
        const auto first = frames().at(0);
        EXPECT_EQ(first.pixels->width(), 1280);
        EXPECT_TRUE(has(first, 0, 0, emptyDesktop));
        std::filesystem::remove(movie);
    }
}

TEST_F(SwayRecording, EndsWholeWithItsMonitorAndGoesOnWithoutAnother) {
    sway->nest();
    sway->startPortal("WL-1");
    begin();
    ASSERT_TRUE(sway->unplug("WL-2"));
    ASSERT_TRUE(awaitFrameAfter([] { SwayDesk::tell("output WL-1 mode 640x720"); }));
    EXPECT_EQ(session->statistics().condition, RecordingCondition::recording);
    ASSERT_TRUE(sway->unplug("WL-1"));
    ASSERT_TRUE(awaitCondition(RecordingCondition::streamStopped));
    EXPECT_THAT(session->statistics().streamError, HasSubstr("stopped sending pictures"));
    end();
    const auto made = frames();
    EXPECT_TRUE(has(made.front(), 1200, 360, emptyDesktop));
    EXPECT_TRUE(has(made.back(), 1200, 360, colors::black)) << "beside a smaller picture";
}

} // namespace
} // namespace vantro::capture::wayland
