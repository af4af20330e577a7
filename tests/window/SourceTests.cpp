// What the start screen shows of the sources beside the screen: their devices and their levels.
#include "window/WindowFixture.h"
#include "window/platform/DeviceMenu.h"

#include <QAccessible>
#include <QApplication>
#include <QMenu>
#include <QSignalSpy>
namespace vantro::window {
namespace {

using namespace std::chrono_literals;
using capture::SoundKind;
using devices::AttachedDevice;
using devices::DeviceChoice;

class SourceTest : public test::WindowFixture {
  protected:
    SourceTest() {
        QObject::connect(&microphones, &DeviceChoice::menuWanted,
                         [this](QPoint place) { showDeviceMenu(microphones, place); });
        microphones.setDevices({builtIn, headset});
    }
    /// The menu that the button opens.
    QMenu& menu(const char* button) {
        click(button);
        auto* opened = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (opened == nullptr)
            throw std::logic_error("no menu is open");
        return *opened;
    }
    static std::vector<std::string> entries(const QMenu& menu) {
        std::vector<std::string> texts;
        for (const auto* action : menu.actions())
            if (!action->isSeparator())
                texts.push_back((action->isChecked() ? "*" : "") + action->text().toStdString());
        return texts;
    }
    void pick(QMenu& menu, const char* text) {
        for (auto* action : menu.actions())
            if (action->text() == QString::fromUtf8(text))
                QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(action).center());
        settle();
    }
    void passTime() {
        timers.advance(60ms);
        settle();
    }
    QString note() { return shows("sourceNote") ? text("sourceNote") : QString(); }

    const AttachedDevice builtIn{QStringLiteral("a"), QStringLiteral("Built-in & Co"), true};
    const AttachedDevice headset{QStringLiteral("b"), QStringLiteral("Headset")};
};

TEST_F(SourceTest, AMenuBesideTheSwitchChoosesTheMicrophoneAndFollowsWhatIsAttached) {
    showWindow();
    auto& opened = menu("microphoneMenu");
    EXPECT_THAT(entries(opened),
                testing::ElementsAre("*Default (Built-in && Co)", "Built-in && Co", "Headset"));
    microphones.setDevices({builtIn, headset, {QStringLiteral("c"), QStringLiteral("Studio")}});
    settle();
    EXPECT_THAT(entries(opened), testing::Contains("Studio")) << "while it is open";
    pick(opened, "Headset");
    EXPECT_EQ(state.microphoneDevice(), "b");
    EXPECT_EQ(preferences.device(ui::DeviceUse::microphone).name, "b");
    EXPECT_EQ(state.webcamDevice(), "");
    auto& again = menu("microphoneMenu");
    EXPECT_THAT(entries(again), testing::Contains("*Headset"));
    pick(again, "Default (Built-in && Co)");
    EXPECT_EQ(state.microphoneDevice(), "");
}

TEST_F(SourceTest, AChosenMicrophoneThatIsGoneIsSaidAndTakenAgainWhenItReturns) {
    preferences.setDevice(ui::DeviceUse::microphone,
                          {QStringLiteral("b"), QStringLiteral("Headset")});
    DeviceChoice next(state, preferences, ui::DeviceUse::microphone);
    next.setDevices({builtIn, headset});
    EXPECT_EQ(state.microphoneDevice(), "b") << "in the next run";
    showWindow();
    microphones.setDevices({builtIn});
    EXPECT_EQ(state.microphoneDevice(), "");
    EXPECT_EQ(note(), "") << "nobody wants it";
    click("microphone");
    EXPECT_EQ(note(), "Headset is not connected; the default microphone is used.");
    EXPECT_GT(window().height(), 120) << "the window makes room for it";
    microphones.setDevices({builtIn, headset});
    settle();
    EXPECT_EQ(state.microphoneDevice(), "b");
    EXPECT_EQ(note(), "");
    platform.able.microphone.whyNot = "There is no microphone.";
    microphones.setDevices({});
    guard.askAgain();
    settle();
    EXPECT_EQ(note(), "") << "the switch says it";
    EXPECT_FALSE(item("microphoneMenu").isEnabled());
}

TEST_F(SourceTest, MetersShowWhatIsSwitchedOnWhileTheWindowIsSeenAndNoLonger) {
    const auto resting = timers.running();
    showWindow();
    EXPECT_THAT(metered, testing::ElementsAre("system"));
    click("microphone");
    EXPECT_THAT(metered, testing::UnorderedElementsAre("system", "microphone "));
    microphones.choose(2);
    EXPECT_THAT(metered, testing::UnorderedElementsAre("system", "microphone b"));
    window().hide();
    settle();
    EXPECT_THAT(metered, testing::IsEmpty());
    EXPECT_EQ(timers.running(), resting);
    window().showMinimized();
    settle();
    EXPECT_THAT(metered, testing::IsEmpty());
    window().showNormal();
    settle();
    EXPECT_EQ(metered.size(), 2U);
    platform.able.systemSound.whyNot = "There is no output.";
    guard.askAgain();
    EXPECT_THAT(metered, testing::ElementsAre("microphone b"));
    state.setWebcamDevice("desk");
    record();
    const auto& asked = platform.made.back().sources;
    EXPECT_FALSE(asked.systemSound || asked.camera);
    EXPECT_TRUE(asked.microphone);
    EXPECT_EQ(asked.microphoneDevice, "b");
    EXPECT_EQ(asked.cameraDevice, "desk");
    EXPECT_THAT(metered, testing::IsEmpty()) << "the recorder tells";
    platform.next->recorderStatus.sounds = {
        {.kind = SoundKind::microphone, .level = 0.1F, .isSilent = false}};
    passTime();
    EXPECT_EQ(meters.microphone()->level(), -20);
    EXPECT_TRUE(shows("microphoneLevel"));
    EXPECT_FALSE(shows("systemLevel"));
    recording.stopRecording();
    runTasks();
    EXPECT_EQ(timers.running(), resting) << "in the editor";
}

TEST_F(SourceTest, AMeterShowsDecibelsHoldsItsPeakAndTellsOfSilence) {
    showWindow();
    click("microphone");
    auto& meter = *meters.microphone();
    EXPECT_FALSE(meter.isShown()) << "nothing has come yet";
    const struct {
        float level;
        int shown;
        int peak;
    } steps[]{{0, -60, -60}, {0.5F, -6, -6}, {0.1F, -20, -6}, {1.5F, 0, 0}, {0.0001F, -60, 0}};
    for (const auto& [level, shown, peak] : steps) {
        readings[SoundKind::microphone] = {.level = level, .isSilent = false};
        passTime();
        EXPECT_EQ(meter.level(), shown);
        EXPECT_EQ(meter.peak(), peak);
    }
    const QSignalSpy changes(&meter, &devices::SourceMeter::changed);
    passTime();
    EXPECT_EQ(changes.count(), 0) << "an unchanged level draws nothing";
    readings[SoundKind::microphone] = {.level = 0.0001F, .isSilent = true};
    passTime();
    EXPECT_EQ(note(), "The microphone is silent.");

    readings[SoundKind::microphone] = {.level = 0.1F, .isSilent = false};
    passTime();
    auto* told = QAccessible::queryAccessibleInterface(&item("microphoneLevel"));
    EXPECT_EQ(told->role(), QAccessible::ProgressBar);
    EXPECT_EQ(told->text(QAccessible::Name), "Microphone level");
    EXPECT_EQ(told->text(QAccessible::Description), "-20 dB");
}

} // namespace
} // namespace vantro::window
