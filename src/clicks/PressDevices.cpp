#include "clicks/PressDevices.h"

#include "clicks/PressDecoder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <stdexcept>

#include <fcntl.h>
#include <libinput.h>
#include <libudev.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vantro::clicks {
namespace {

template <auto release>
struct Release {
    template <typename Handle>
    void operator()(Handle* handle) const {
        release(handle);
    }
};
using Udev = std::unique_ptr<udev, Release<udev_unref>>;
using UdevDevice = std::unique_ptr<udev_device, Release<udev_device_unref>>;
using UdevList = std::unique_ptr<udev_enumerate, Release<udev_enumerate_unref>>;
using Event = std::unique_ptr<libinput_event, Release<libinput_event_destroy>>;

constexpr std::array pointingDevices{"ID_INPUT_MOUSE", "ID_INPUT_TOUCHPAD",
                                     "ID_INPUT_POINTINGSTICK", "ID_INPUT_TABLET"};

bool isPointing(udev_device* device) {
    return device != nullptr && std::ranges::any_of(pointingDevices, [&](const char* kind) {
               return udev_device_get_property_value(device, kind) != nullptr;
           });
}

/// The one place where a device is opened. `data` is the udev context.
int openPointing(const char* path, int flags, void* data) {
    struct stat node{};
    if (stat(path, &node) != 0)
        return -errno;
    const UdevDevice device(
        udev_device_new_from_devnum(static_cast<udev*>(data), 'c', node.st_rdev));
    if (!isPointing(device.get()))
        return -EACCES;
    // Read, whatever libinput would like: it lights lamps of keyboards.
    const int fd = open(path, (flags & ~O_ACCMODE) | O_RDONLY | O_CLOEXEC);
    return fd < 0 ? -errno : fd;
}

void closeDevice(int fd, void* /*data*/) {
    close(fd);
}

constexpr libinput_interface opener{openPointing, closeDevice};

} // namespace

void PressDevices::Close::operator()(libinput* context) const {
    libinput_unref(context);
}

PressDevices::PressDevices(const PointerSettings& settings, const std::string& seat)
    : m_settings(settings) {
    const Udev devices(udev_new());
    if (devices)
        m_context.reset(libinput_udev_create_context(&opener, devices.get(), devices.get()));
    if (!m_context || libinput_udev_assign_seat(m_context.get(), seat.c_str()) != 0)
        throw std::runtime_error("the devices of " + seat + " cannot be followed");
    takeEvents(); // those that are there are configured before their first event
}

bool PressDevices::canRead() {
    const Udev devices(udev_new());
    const UdevList list(devices ? udev_enumerate_new(devices.get()) : nullptr);
    if (!list)
        return false;
    udev_enumerate_add_match_subsystem(list.get(), "input");
    udev_enumerate_add_match_sysname(list.get(), "event*");
    udev_enumerate_scan_devices(list.get());
    for (auto* entry = udev_enumerate_get_list_entry(list.get()); entry != nullptr;
         entry = udev_list_entry_get_next(entry)) {
        const UdevDevice device(
            udev_device_new_from_syspath(devices.get(), udev_list_entry_get_name(entry)));
        const char* node = device ? udev_device_get_devnode(device.get()) : nullptr;
        if (isPointing(device.get()) && node != nullptr && access(node, R_OK) == 0)
            return true;
    }
    return false;
}

int PressDevices::fd() const {
    return libinput_get_fd(m_context.get());
}

std::vector<PressRecord> PressDevices::take() {
    libinput_dispatch(m_context.get());
    return takeEvents();
}

std::vector<PressRecord> PressDevices::takeEvents() {
    std::vector<PressRecord> presses;
    while (const Event event{libinput_get_event(m_context.get())}) {
        if (libinput_event_get_type(event.get()) == LIBINPUT_EVENT_DEVICE_ADDED)
            configure(libinput_event_get_device(event.get()), m_settings);
        if (auto press = pressOf(event.get())) {
            const bool isMouse = press->device == Device::mouse || press->device == Device::stick;
            if (isMouse && m_settings.mouse.leftHanded.value_or(false))
                press->button = press->button == Button::left ? Button::right : Button::left;
            presses.push_back(*press);
        }
    }
    return presses;
}

} // namespace vantro::clicks
