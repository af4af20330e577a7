// What is known of the pointer and its devices, worked out.
#include "capture/wayland/clicks/DesktopPointers.h"
#include "capture/wayland/clicks/PointerTrail.h"

#include <gtest/gtest.h>

namespace vantro::capture::wayland {
namespace {

using namespace std::chrono_literals;
using Settings = clicks::PointerSettings;

TEST(PointerTrail, GoesStraightWhileItMovesAndStaysWhileItRests) {
    const base::HostTime zero(1h);
    const model::Point nowhere{-1, -1};
    PointerTrail trail;
    EXPECT_FALSE(trail.placeAt(zero));
    // It moves, rests for a second, and moves on.
    for (const auto& [time, x] : {std::pair(0ms, 0.0), {16ms, 16.0}, {1016ms, 116.0}})
        trail.note({zero + time, {x, 5}});
    const struct {
        std::chrono::milliseconds time;
        double x;
    } cases[]{{-5ms, 0}, {4ms, 4}, {16ms, 16}, {500ms, 16}, {982ms, 16}, {999ms, 66}, {2s, 116}};
    for (const auto& [time, x] : cases)
        EXPECT_DOUBLE_EQ(trail.placeAt(zero + time).value_or(nowhere).x, x)
            << time.count() << " ms";
    trail.note({zero + 9s, {7, 5}});
    EXPECT_EQ(trail.placeAt(zero + 8s).value_or(nowhere).x, 116) << "kept however long it rested";
}

TEST(DesktopPointers, AreReadAsDesktopsTellThem) {
    const Settings expected{.mouse = {true, false},
                            .touchpad = {true, true},
                            .tap = false,
                            .tapMap = Settings::TapMap::leftMiddleRight,
                            .clickMethod = Settings::ClickMethod::fingers,
                            .touchpadUse = Settings::Use::withoutMouse};
    EXPECT_EQ(gnomePointers("org.gnome.desktop.peripherals.keyboard delay uint32 500\n"
                            "org.gnome.desktop.peripherals.mouse left-handed true\n"
                            "org.gnome.desktop.peripherals.mouse middle-click-emulation false\n"
                            "org.gnome.desktop.peripherals.touchpad click-method 'fingers'\n"
                            "org.gnome.desktop.peripherals.touchpad left-handed 'mouse'\n"
                            "org.gnome.desktop.peripherals.touchpad middle-click-emulation true\n"
                            "org.gnome.desktop.peripherals.touchpad send-events "
                            "'disabled-on-external-mouse'\n"
                            "org.gnome.desktop.peripherals.touchpad tap-button-map 'lmr'\n"
                            "org.gnome.desktop.peripherals.touchpad tap-to-click false\n"),
              expected);
    EXPECT_EQ(swayPointers(R"([{"type": "keyboard", "libinput": {"send_events": "enabled"}},
        {"type": "touchpad", "libinput": {"send_events": "disabled_on_external_mouse",
         "tap": "disabled", "tap_button_map": "lmr", "left_handed": "enabled",
         "middle_emulation": "enabled", "click_method": "clickfinger"}},
        {"type": "pointer", "libinput": {"left_handed": "enabled",
         "middle_emulation": "disabled"}}, {"type": "touchpad"}])"),
              expected);
    for (const auto* other : {"", "{}", "[3]", R"([{"type": 3}])"})
        EXPECT_EQ(swayPointers(other), Settings()) << other;
    EXPECT_EQ(gnomePointers("No such schema\n"), Settings());
}

} // namespace
} // namespace vantro::capture::wayland
