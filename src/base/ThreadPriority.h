#pragma once

namespace vantro::base {

/// From now on the calling thread, and those that it starts, work while a processor has nothing
/// else to do, and for a hundredth of the time where all are busy: without that, whoever waits for
/// one to end would wait for as long as the load lasts. There is no way back. Where the system
/// refuses, all stays as it was.
void makeThreadIdle() noexcept;

} // namespace vantro::base
