// The genuine service, started by a bus, over devices that umockdev makes.
#include "base/FileDescriptor.h"
#include "clicks/PressRecord.h"
#include "support/ClickSystem.h"
#include "support/Eventually.h"

#include <gmock/gmock.h>
#include <poll.h>
#include <sys/ioctl.h>

namespace vantro::clicks {
namespace {

using namespace vantro::test;
using Settings = std::map<std::string, sdbus::Variant>;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// A program that watches, with a name of its own on the bus.
class Caller {
  public:
    explicit Caller(const Settings& settings = {})
        : m_service(sdbus::createProxy(*m_bus, service::name, service::path)) {
        watch(settings);
    }
    void watch(const Settings& settings) {
        try {
            sdbus::UnixFd pipe;
            m_service->callMethod(service::watch)
                .onInterface(service::interface)
                .withArguments(settings)
                .storeResultsTo(pipe);
            m_pipe = base::FileDescriptor(pipe.release());
        } catch (const sdbus::Error& error) {
            m_error = error.getName() + ": " + error.getMessage();
        }
    }
    /// The service knows when this returns: a device of umockdev's has one reader at a time.
    ~Caller() {
        const auto name = m_bus->getUniqueName();
        m_service.reset();
        m_bus.reset();
        EXPECT_TRUE(eventually([&] { return !ClickSystem::isOnBus(name); }));
    }
    Caller(const Caller&) = delete;
    Caller& operator=(const Caller&) = delete;

    const std::string& error() const { return m_error; }
    bool hasNews() const { return isReadable(0); }
    std::size_t waiting() const {
        int bytes = 0;
        ioctl(m_pipe.get(), FIONREAD, &bytes);
        return static_cast<std::size_t>(bytes);
    }
    /// The next records; fewer where no more come, or the pipe ends.
    std::vector<PressRecord> take(std::size_t count) const {
        std::vector<PressRecord> records;
        PressRecord record;
        while (records.size() < count && isReadable(10'000) &&
               read(m_pipe.get(), &record, sizeof record) == sizeof record)
            records.push_back(record);
        return records;
    }

  private:
    bool isReadable(int longest) const {
        pollfd waited{.fd = m_pipe.get(), .events = POLLIN, .revents = 0};
        return poll(&waited, 1, longest) == 1;
    }

    std::unique_ptr<sdbus::IConnection> m_bus = sdbus::createSystemBusConnection();
    std::unique_ptr<sdbus::IProxy> m_service;
    base::FileDescriptor m_pipe;
    std::string m_error;
};

std::vector<Button> buttonsOf(const std::vector<PressRecord>& records) {
    std::vector<Button> buttons;
    buttons.reserve(records.size());
    for (const auto& each : records)
        buttons.push_back(each.button);
    return buttons;
}

class ClickService : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!ClickSystem::isInstalled())
            GTEST_SKIP() << "dbus-daemon is not installed";
        system = std::make_unique<ClickSystem>();
        devices = &system->devices();
        devices->plug(Input::mouse);
    }

    std::unique_ptr<ClickSystem> system;
    InputDevices* devices = nullptr;
};

TEST_F(ClickService, TellsOfPressesWithTheKernelsTimeAndOfNothingElse) {
    devices->plug(Input::keyboard);
    const Caller caller;
    ASSERT_EQ(caller.error(), "");
    devices->click(Input::keyboard, KEY_ENTER);
    for (const std::uint16_t other : {KEY_A, BTN_MIDDLE, KEY_B})
        devices->click(Input::mouse, other);
    devices->send(Input::mouse, {{EV_REL, REL_X, 5}, {EV_REL, REL_WHEEL, 1}});
    const auto left = devices->click(Input::mouse, BTN_LEFT);
    const auto right = devices->click(Input::mouse, BTN_RIGHT);
    EXPECT_THAT(caller.take(2),
                ElementsAre(PressRecord{left, Button::left, Device::mouse, 0, 0},
                            PressRecord{right, Button::right, Device::mouse, 0, 1}));
    EXPECT_FALSE(caller.hasNews());
}

/// Fingers at rest at their places, then up again; pressed where the touchpad is one button.
void touch(InputDevices& devices, int fingers, bool isPressed, int x = 300, int y = 200) {
    std::vector<InputEvent> down;
    std::vector<InputEvent> up;
    for (int finger = 0; finger < fingers; ++finger) {
        down.insert(down.end(), {{EV_ABS, ABS_MT_SLOT, finger},
                                 {EV_ABS, ABS_MT_TRACKING_ID, finger},
                                 {EV_ABS, ABS_MT_POSITION_X, x + 200 * finger},
                                 {EV_ABS, ABS_MT_POSITION_Y, y}});
        up.insert(up.end(), {{EV_ABS, ABS_MT_SLOT, finger}, {EV_ABS, ABS_MT_TRACKING_ID, -1}});
    }
    const std::uint16_t tool = fingers == 1 ? BTN_TOOL_FINGER : BTN_TOOL_DOUBLETAP;
    down.insert(down.end(), {{EV_KEY, BTN_TOUCH, 1}, {EV_KEY, tool, 1}});
    up.insert(up.end(), {{EV_KEY, BTN_TOUCH, 0}, {EV_KEY, tool, 0}});
    devices.send(Input::touchpad, down);
    if (isPressed)
        devices.click(Input::touchpad, BTN_LEFT);
    devices.send(Input::touchpad, up);
}

TEST_F(ClickService, TakesEachDeviceAsTheCallersUserHasSetIt) {
    devices->plug(Input::touchpad);
    const auto is = [](auto value) { return sdbus::Variant(value); };
    const auto word = [](const char* value) { return sdbus::Variant(std::string(value)); };
    const auto tap = [&](int fingers) { touch(*devices, fingers, false); };
    const auto press = [&](int fingers, int x = 300, int y = 200) {
        touch(*devices, fingers, true, x, y);
    };
    using Buttons = std::vector<Button>;
    const struct {
        const char* what;
        Settings settings;
        std::function<void()> doThis;
        Buttons expected;
    } cases[]{
        {"a tap", {}, [&] { tap(1); }, {Button::left}},
        {"a tap with two fingers", {}, [&] { tap(2); }, {Button::right}},
        {"two fingers are the middle button",
         {{"touchpad-tap-map", word("lmr")}},
         [&] { tap(2), press(1); },
         {Button::left}},
        {"no tapping", {{"touchpad-tap", is(false)}}, [&] { tap(1), press(1); }, {Button::left}},
        {"the area at the right",
         {{"touchpad-click-method", word("areas")}},
         [&] { press(1, 950, 590); },
         {Button::right}},
        {"no area",
         {{"touchpad-click-method", word("fingers")}},
         [&] { press(1, 950, 590); },
         {Button::left}},
        {"two fingers",
         {{"touchpad-click-method", word("fingers")}},
         [&] { press(2); },
         {Button::right}},
        {"the area at the left",
         {{"touchpad-left-handed", is(true)}},
         [&] { press(1, 50, 590); },
         {Button::right}},
        {"a mouse for the left hand",
         {{"mouse-left-handed", is(true)}},
         [&] { devices->click(Input::mouse, BTN_LEFT); },
         {Button::right}},
        {"a touchpad that is off",
         {{"touchpad-use", word("never")}},
         [&] { press(1), devices->click(Input::mouse, BTN_RIGHT); },
         {Button::right}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        const Caller caller(each.settings);
        ASSERT_EQ(caller.error(), "");
        each.doThis();
        EXPECT_EQ(buttonsOf(caller.take(each.expected.size())), each.expected);
        system->setScript({}); // nothing is left for the next reader
    }
}

TEST_F(ClickService, SaysWhyItRefuses) {
    const struct {
        Settings settings;
        const char* error;
        const char* what;
    } cases[]{
        {{{"keys", sdbus::Variant(true)}}, service::badSettings, "keys"},
        {{{"touchpad-tap", sdbus::Variant(7)}}, service::badSettings, "touchpad-tap"},
        {{{"touchpad-tap", sdbus::Variant(std::string("yes"))}},
         service::badSettings,
         "touchpad-tap"},
        {{{"touchpad-tap-map", sdbus::Variant(std::string("rml"))}},
         service::badSettings,
         "touchpad-tap-map"},
    };
    for (const auto& each : cases) {
        const Caller caller(each.settings);
        EXPECT_THAT(caller.error(), ::testing::StartsWith(each.error));
        EXPECT_THAT(caller.error(), HasSubstr(each.what));
    }
    EXPECT_EQ(system->questions(), 0);
    Caller first;
    first.watch({});
    EXPECT_THAT(first.error(), ::testing::StartsWith(service::tooMany));
    system->setScript({.answer = ClickScript::refuses});
    EXPECT_THAT(Caller().error(), ::testing::StartsWith(service::notAllowed));
    EXPECT_EQ(system->questions(), 2);
}

TEST_F(ClickService, IsSilentWhileTheCallersSessionIsNotInUse) {
    const Caller caller;
    const auto clickIn = [&](const ClickScript& script) {
        system->setScript(script);
        const auto time = devices->click(Input::mouse, BTN_LEFT);
        if (!script.isActive || script.isLocked) {
            system->setScript(script); // whoever reads it has done so
            devices->forgetUnread(Input::mouse);
        }
        return time;
    };
    std::vector<std::uint64_t> told{clickIn({})};
    ASSERT_EQ(caller.take(1).size(), 1U);
    clickIn({.isActive = false});
    clickIn({.isLocked = true});
    clickIn({.isActive = false, .isLocked = true});
    told.push_back(clickIn({}));
    const auto next = caller.take(1);
    ASSERT_EQ(next.size(), 1U);
    EXPECT_EQ(next[0].time, told[1]);
    EXPECT_EQ(next[0].sequence, 1U);
    system->removeSession();
    devices->click(Input::mouse, BTN_LEFT);
    EXPECT_FALSE(caller.hasNews());
}

TEST_F(ClickService, EndsWithItsCallersAndComesBack) {
    {
        const Caller gone;
        const Caller stays;
    }
    EXPECT_TRUE(eventually([&] { return !ClickSystem::isOnBus(service::name); }));
    EXPECT_EQ(Caller().error(), "");
    system->setScript({.answer = ClickScript::never});
    {
        auto asking = sdbus::createSystemBusConnection();
        auto proxy = sdbus::createProxy(*asking, service::name, service::path);
        const auto pending = proxy->callMethodAsync(service::watch)
                                 .onInterface(service::interface)
                                 .withArguments(Settings())
                                 .uponReplyInvoke([](const sdbus::Error*, const sdbus::UnixFd&) {});
        EXPECT_TRUE(eventually([&] { return system->questions() == 4; }));
    }
    EXPECT_TRUE(eventually([&] { return system->withdrawn() == 1; }));
    EXPECT_TRUE(eventually([&] { return !ClickSystem::isOnBus(service::name); }));
}

TEST_F(ClickService, DropsWhatNobodyTakesAndSaysSo) {
    const Caller caller;
    constexpr std::size_t room = 256;
    std::vector<PressRecord> kept;
    // Presses take a moment to arrive: the last ones may find room that was made behind them.
    ASSERT_TRUE(eventually([&] {
        constexpr auto full = room * sizeof(PressRecord);
        for (int beyond = 0; beyond < 2;) {
            const auto before = caller.waiting();
            // By turns: what one button does in no time is taken for a bad contact.
            for (const int value : {1, 0})
                for (const std::uint16_t button : {BTN_LEFT, BTN_RIGHT})
                    devices->send(Input::mouse, {{EV_KEY, button, value}});
            beyond += before == full ? 1 : 0;
            EXPECT_TRUE(eventually([&] { return caller.waiting() > before || before == full; }));
        }
        system->setScript({}); // what it has at hand is handled
        const auto taken = caller.take(room);
        kept = kept.empty() ? taken : kept;
        devices->click(Input::mouse, BTN_LEFT);
        const auto next = caller.take(1);
        return next.size() == 1 && next[0].flags == PressRecord::lost && next[0].sequence > room;
    }));
    ASSERT_EQ(kept.size(), room);
    EXPECT_EQ(kept.back().sequence, 255U);
}

} // namespace
} // namespace vantro::clicks
