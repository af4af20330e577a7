#include "clicks/PressDecoder.h"

#include <memory>

#include <libinput.h>
#include <libudev.h>
#include <linux/input-event-codes.h>

namespace vantro::clicks {
namespace {

Device deviceOf(libinput_event* event) {
    const std::unique_ptr<udev_device, decltype(&udev_device_unref)> device(
        libinput_device_get_udev_device(libinput_event_get_device(event)), udev_device_unref);
    const auto is = [&](const char* kind) {
        return device && udev_device_get_property_value(device.get(), kind) != nullptr;
    };
    return is("ID_INPUT_TOUCHPAD")        ? Device::touchpad
           : is("ID_INPUT_POINTINGSTICK") ? Device::stick
                                          : Device::mouse;
}

std::optional<PressRecord> buttonPress(libinput_event* event) {
    auto* button = libinput_event_get_pointer_event(event);
    if (libinput_event_pointer_get_button_state(button) != LIBINPUT_BUTTON_STATE_PRESSED)
        return {};
    PressRecord press{.time = libinput_event_pointer_get_time_usec(button),
                      .device = deviceOf(event)};
    switch (libinput_event_pointer_get_button(button)) {
    case BTN_LEFT:
        return press;
    case BTN_RIGHT:
        press.button = Button::right;
        return press;
    default:
        return {};
    }
}

std::optional<PressRecord> tipPress(libinput_event* event) {
    auto* tip = libinput_event_get_tablet_tool_event(event);
    if (libinput_event_tablet_tool_get_tip_state(tip) != LIBINPUT_TABLET_TOOL_TIP_DOWN)
        return {};
    return PressRecord{.time = libinput_event_tablet_tool_get_time_usec(tip),
                       .device = Device::pen};
}

} // namespace

std::optional<PressRecord> pressOf(libinput_event* event) {
    switch (libinput_event_get_type(event)) {
    case LIBINPUT_EVENT_POINTER_BUTTON:
        return buttonPress(event);
    case LIBINPUT_EVENT_TABLET_TOOL_TIP:
        return tipPress(event);
    default:
        return {};
    }
}

} // namespace vantro::clicks
