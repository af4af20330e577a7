#include "base/ThreadPriority.h"

#include <sched.h>
#include <sys/resource.h>

namespace vantro::base {

void makeThreadIdle() noexcept {
    constexpr int lowest = 19;
    constexpr sched_param none{};
    // On Linux both take 0 for the calling thread alone.
    ::setpriority(PRIO_PROCESS, 0, lowest);
    ::sched_setscheduler(0, SCHED_BATCH, &none); // interrupts nobody when it wakes
}

} // namespace vantro::base
