// Preloaded into the service under test beside umockdev, which stands for the kernel's devices but
// knows nothing of udev's database, and opens a terminal where a device is meant.
#include <dlfcn.h>
#include <sys/sysmacros.h>
#include <sys/types.h>

struct udev;
struct udev_device;

extern "C" {

int udev_device_get_is_initialized(udev_device* /*device*/) {
    return 1;
}

/// What libinput has opened is the device that it has asked for before.
udev_device* udev_device_new_from_devnum(udev* context, char type, dev_t number) {
    using Function = udev_device* (*)(udev*, char, dev_t);
    constexpr unsigned firstTerminal = 136;
    constexpr unsigned lastTerminal = 143;
    static dev_t asked = 0;
    if (major(number) < firstTerminal || major(number) > lastTerminal)
        asked = number;
    static const auto real =
        reinterpret_cast<Function>(dlsym(RTLD_NEXT, "udev_device_new_from_devnum"));
    return real(context, type, asked);
}
}
