#include "support/InputDevices.h"

#include "support/TemporaryFolder.h"

#include <array>
#include <chrono>
#include <cstring>
#include <map>
#include <stdexcept>
#include <string>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <linux/input.h>
#include <termios.h>
#include <umockdev.h>
#include <unistd.h>

namespace vantro::test {
namespace {

constexpr int width = 1000; // of the touchpad, in its units
constexpr int height = 600;
constexpr int unitsPerMillimeter = 10;

struct Profile {
    const char* classes; // as udev calls it
    std::vector<int> kinds;
    std::vector<int> keys;
    std::vector<int> relative;
    std::map<int, int> absolute; // its greatest value
    std::vector<int> properties;
};

const Profile& profileOf(Input device) {
    static const std::array<Profile, 3> profiles{{
        {.classes = "E: ID_INPUT_MOUSE=1\nE: ID_INPUT_KEY=1\nE: ID_INPUT_KEYBOARD=1\n",
         .kinds = {EV_SYN, EV_KEY, EV_REL},
         .keys = {BTN_LEFT, BTN_RIGHT, BTN_MIDDLE, KEY_A, KEY_B},
         .relative = {REL_X, REL_Y, REL_WHEEL},
         .absolute = {},
         .properties = {}},
        {.classes = "E: ID_INPUT_TOUCHPAD=1\n",
         .kinds = {EV_SYN, EV_KEY, EV_ABS},
         .keys = {BTN_LEFT, BTN_TOUCH, BTN_TOOL_FINGER, BTN_TOOL_DOUBLETAP},
         .relative = {},
         .absolute = {{ABS_X, width},
                      {ABS_Y, height},
                      {ABS_MT_SLOT, 4},
                      {ABS_MT_POSITION_X, width},
                      {ABS_MT_POSITION_Y, height},
                      {ABS_MT_TRACKING_ID, 65535}},
         .properties = {INPUT_PROP_POINTER, INPUT_PROP_BUTTONPAD}},
        {.classes = "E: ID_INPUT_KEYBOARD=1\nE: ID_INPUT_KEY=1\n",
         .kinds = {EV_SYN, EV_KEY},
         .keys = {KEY_A, KEY_B, KEY_ENTER},
         .relative = {},
         .absolute = {},
         .properties = {}},
    }};
    return profiles.at(static_cast<std::size_t>(device));
}

std::string hex(const auto& bytes) {
    return fmt::format("{:02X}", fmt::join(bytes, ""));
}

std::string bits(const std::vector<int>& set, std::size_t size) {
    std::vector<std::uint8_t> bytes(size);
    for (const int bit : set)
        bytes.at(static_cast<std::size_t>(bit / 8)) |= static_cast<std::uint8_t>(1 << bit % 8);
    return fmt::format("{} {}\n", size, hex(bytes));
}

/// What the kernel answers to a program that opens the device.
std::string answersOf(const Profile& profile, const std::string& node) {
    constexpr std::array<std::uint8_t, 255> noText{};
    std::vector<int> axes;
    std::string ranges;
    for (const auto& [axis, greatest] : profile.absolute) {
        const std::array<std::int32_t, 6> range{0, 0, greatest,
                                                0, 0, axis == ABS_MT_SLOT ? 0 : unitsPerMillimeter};
        std::array<std::uint8_t, sizeof range> bytes{};
        std::memcpy(bytes.data(), range.data(), sizeof range);
        axes.push_back(axis);
        ranges += fmt::format("EVIOCGABS({}) 0 {}\n", axis, hex(bytes));
    }
    auto answers = fmt::format("@DEV {}\nEVIOCGVERSION 0 01000100\nEVIOCGID 0 03006D0416C01101\n"
                               "EVIOCGNAME 1 {}\nEVIOCGPHYS 1 {}\nEVIOCGUNIQ 1 {}\n",
                               node, hex(noText), hex(noText), hex(noText));
    answers += "EVIOCGPROP " + bits(profile.properties, 8);
    answers += "EVIOCGBIT(0) " + bits(profile.kinds, 8);
    answers += "EVIOCGBIT(1) " + bits(profile.keys, 96);
    answers += "EVIOCGBIT(2) " + bits(profile.relative, 8);
    answers += "EVIOCGBIT(3) " + bits(axes, 8);
    for (const int kind : {EV_MSC, EV_SW, EV_LED, EV_SND})
        answers += fmt::format("EVIOCGBIT({}) ", kind) + bits({}, 8);
    answers += fmt::format("EVIOCGBIT({}) ", EV_FF) + bits({}, 16);
    answers += "EVIOCGKEY " + bits({}, 96);
    for (const auto* state : {"EVIOCGLED ", "EVIOCGSW "})
        answers += state + bits({}, 8);
    return answers + ranges;
}

} // namespace

struct InputDevices::Testbed {
    UMockdevTestbed* bed = umockdev_testbed_new();
    TemporaryFolder folder;
    std::map<Input, int> numbers; // of what is plugged in

    std::string node(Input device) const {
        return fmt::format("/dev/input/event{}", numbers.at(device));
    }
};

InputDevices::InputDevices() : m_testbed(std::make_unique<Testbed>()) {}

InputDevices::~InputDevices() {
    g_object_unref(m_testbed->bed);
}

void InputDevices::plug(Input device) {
    auto& [bed, folder, numbers] = *m_testbed;
    const auto& profile = profileOf(device);
    const int number = numbers[device] = static_cast<int>(numbers.size());
    const auto parent = fmt::format("P: /devices/virtual/input/input{0}\nE: SUBSYSTEM=input\n"
                                    "E: PRODUCT=3/46d/c016/111\nA: name=input{0}\n\n",
                                    number);
    const auto node = fmt::format(
        "P: /devices/virtual/input/input{0}/event{0}\nN: input/event{0}\nE: SUBSYSTEM=input\n"
        "E: DEVNAME=/dev/input/event{0}\nE: MAJOR=13\nE: MINOR={1}\nE: ID_INPUT=1\n{2}"
        "A: dev=13:{1}\n\n",
        number, 64 + number, profile.classes);
    const auto name = m_testbed->node(device);
    const auto answers = folder.write("answers", answersOf(profile, name));
    if (umockdev_testbed_add_from_string(bed, (node + parent).c_str(), nullptr) == 0 ||
        umockdev_testbed_load_ioctl(bed, name.c_str(), answers.c_str(), nullptr) == 0)
        throw std::runtime_error("umockdev makes no device");
}

std::uint64_t InputDevices::send(Input device, const std::vector<InputEvent>& events) {
    const auto now = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
    const int file = umockdev_testbed_get_dev_fd(m_testbed->bed, m_testbed->node(device).c_str());
    const auto write = [&](const InputEvent& each) {
        input_event event{};
        event.input_event_sec = now.count() / 1'000'000;
        event.input_event_usec = now.count() % 1'000'000;
        event.type = each.type;
        event.code = each.code;
        event.value = each.value;
        if (::write(file, &event, sizeof event) != sizeof event)
            throw std::runtime_error("a device takes no event");
    };
    for (const auto& each : events)
        write(each);
    write({EV_SYN, SYN_REPORT, 0});
    return static_cast<std::uint64_t>(now.count());
}

std::uint64_t InputDevices::click(Input device, std::uint16_t code) {
    const auto time = send(device, {{EV_KEY, code, 1}});
    send(device, {{EV_KEY, code, 0}});
    return time;
}

void InputDevices::forgetUnread(Input device) {
    ::tcflush(umockdev_testbed_get_dev_fd(m_testbed->bed, m_testbed->node(device).c_str()),
              TCOFLUSH);
}

} // namespace vantro::test
