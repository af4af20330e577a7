#pragma once

namespace vantro::base {

/// From now on the calling thread, and those that it starts, work only while a processor has
/// nothing else to do. There is no way back. Where the system refuses, all stays as it was.
void makeThreadIdle() noexcept;

} // namespace vantro::base
