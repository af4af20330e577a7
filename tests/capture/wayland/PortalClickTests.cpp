// Clicks from the genuine service, over devices that umockdev makes, in recordings through the
// genuine portal.
#include "capture/OwnPresses.h"
#include "capture/wayland/PortalFixture.h"
#include "capture/wayland/clicks/ClickAccess.h"
#include "support/ClickSystem.h"

#include <algorithm>
#include <thread>

namespace vantro::capture::wayland {
namespace {

using namespace vantro::test;
using namespace colors;
using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::HasSubstr;

constexpr auto service = "com.vantro.Clicks1";

class PortalClicks : public PortalFixture {
  protected:
    void start(const ClickScript& script = {}, const ScreenProfile& profile = {},
               const PortalScript& portal = {}) {
        offer(profile, portal);
        system = std::make_unique<ClickSystem>(script);
        system->devices().plug(Input::mouse);
        clicks = std::make_shared<ClickAccess>();
    }
    /// As records have it.
    base::HostTime click(std::uint16_t button = BTN_LEFT) const {
        return base::HostTime(
            std::chrono::microseconds(system->devices().click(Input::mouse, button)));
    }
    /// A fifth of a second, as pictures count it: the service has passed on what it has.
    void awaitPictures() const {
        for (const auto color : {green, red, green, red, green, red, green, red, green, red})
            ASSERT_TRUE(awaitFrameAfter([&] { screen->show(filled(color)); }));
    }
    std::string ability() const {
        const auto able = connect()->abilities().clicks;
        return able.whyNot + able.remark;
    }

    std::unique_ptr<ClickSystem> system;
};

TEST_F(PortalClicks, HaveTheTimeOfThePressAndThePlaceThatThePointerHadThen) {
    const ScreenProfile profile{.width = 1920, .height = 120};
    start({}, profile);
    begin();
    const auto zero = base::hostNow();
    const auto placeAt = [&](base::HostTime when) {
        return 50 + 1000 * base::inSeconds(when - zero); // a thousand pixels a second
    };
    screen->animate([&](int) {
        const int place = static_cast<int>(std::lround(placeAt(base::hostNow())));
        return ScreenFrame{.hasPicture = false, .pointer = {{std::min(place, 1900), 60}}};
    });
    constexpr std::size_t presses = 9;
    std::vector<base::HostTime> pressed;
    while (pressed.size() < presses) {
        const auto sent = screen->sent();
        ASSERT_TRUE(eventually([&] { return screen->sent() >= sent + 8; }));
        pressed.push_back(click(pressed.size() == 3 ? BTN_RIGHT : BTN_LEFT));
        if (pressed.size() == presses)
            OwnPresses::ofThisProgram().note(pressed.back() + 3ms);
    }
    const auto sent = screen->sent();
    ASSERT_TRUE(eventually([&] { return screen->sent() >= sent + 6; }));
    end();
    const auto& told = metadata.clickEvents;
    ASSERT_EQ(told.size(), presses - 1) << "that in our own window is none";
    for (std::size_t i = 0; i < told.size(); ++i) {
        EXPECT_EQ(told[i].isRightClick, i == 3);
        EXPECT_NEAR(told[i].timestamp - told[0].timestamp, base::inSeconds(pressed[i] - pressed[0]),
                    0.0001);
    }
    // On a busy machine news of the pointer come late, which nobody can tell from the pointer.
    const auto delay = [](const model::CursorPosition& sample) {
        return sample.timestamp - (sample.x - 50) / 1000;
    };
    const auto& path = metadata.cursorPositions;
    const double least = delay(*std::ranges::min_element(path, {}, delay));
    std::size_t timely = 0;
    for (std::size_t i = 0; i < told.size(); ++i) {
        const auto after = std::ranges::lower_bound(path, told[i].timestamp, {},
                                                    &model::CursorPosition::timestamp);
        if (after == path.begin() || after == path.end() || delay(*after) > least + 0.0015 ||
            delay(*std::prev(after)) > least + 0.0015)
            continue;
        ++timely;
        EXPECT_NEAR(told[i].x, placeAt(pressed[i]), 2) << "click " << i;
    }
    EXPECT_GE(timely, told.size() / 2);
}

TEST_F(PortalClicks, AreAllowedOnceForAllRecordings) {
    start();
    EXPECT_THAT(ability(), HasSubstr("you are asked once"));
    EXPECT_FALSE(ClickSystem::isOnBus(service)) << "looking starts nothing";
    for (int recording = 0; recording < 2; ++recording) {
        begin();
        click();
        awaitPictures();
        end();
        EXPECT_EQ(metadata.clickEvents.size(), 1U);
        session.reset();
        click(); // between recordings, so in none
    }
    EXPECT_EQ(system->questions(), 1);
    EXPECT_EQ(ability(), "");
}

TEST_F(PortalClicks, ThatAreRefusedDoNoHarmAndAreNotAskedForAgain) {
    start({.answer = ClickScript::refuses});
    for (int recording = 0; recording < 2; ++recording) {
        begin();
        EXPECT_THAT(session->statistics().notes, Contains(HasSubstr("you have not allowed it")));
        end();
        session.reset();
    }
    EXPECT_EQ(system->questions(), 1);
}

TEST_F(PortalClicks, AreAskedForInVainWhereTheRecordingIsGivenUp) {
    start({.answer = ClickScript::never});
    session = std::make_unique<RecordingSession>(RecordingRequest(), [this] { return connect(); });
    std::stop_source cancel;
    std::jthread user([&] {
        eventually([&] { return system->questions() == 1; });
        cancel.request_stop();
    });
    EXPECT_FALSE(session->choose(cancel.get_token()));
    session.reset();
    EXPECT_EQ(system->withdrawn(), 0) << "an answer counts for the next recording";
    clicks.reset(); // the program ends
    EXPECT_TRUE(eventually([&] { return system->withdrawn() == 1; }));
}

TEST_F(PortalClicks, AreInTheMiddleWhereThePointerIsUnknownAndEndWithTheService) {
    start({}, {}, {.cursorModes = 3});
    EXPECT_THAT(ability(), HasSubstr("asked once"));
    begin();
    EXPECT_THAT(session->statistics().notes, Contains(HasSubstr("without their places")));
    click();
    awaitPictures();
    system.reset();
    EXPECT_TRUE(eventually([&] {
        return std::ranges::any_of(session->statistics().lostSources,
                                   [](const auto& lost) { return lost.starts_with("Clicks"); });
    }));
    end();
    ASSERT_EQ(metadata.clickEvents.size(), 1U);
    EXPECT_EQ(metadata.clickEvents[0].x, 320);
    EXPECT_EQ(metadata.clickEvents[0].y, 180);
}

} // namespace
} // namespace vantro::capture::wayland
