#include "capture/x11/windows/X11OwnProcess.h"

#include <unistd.h>

namespace vantro::capture::x11 {

bool isThisProcess(std::int64_t process) {
    return process == getpid();
}

} // namespace vantro::capture::x11
