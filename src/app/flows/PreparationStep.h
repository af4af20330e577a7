#pragma once

namespace vantro::app::flows {

/// What precedes a recording.
enum class PreparationStep {
    none,
    pickingWindow,
    selectingArea,
    choosing,
    confirming,
    countingDown
};

/// Whether one step may follow another. From each of them back to none: cancelled, failed, or the
/// editor was opened meanwhile.
///
///   none -+-> pickingWindow -+-> choosing -+-> selectingArea -+-> countingDown -+-> none
///         +-> selectingArea -+             +-> confirming ----+                 | (recording)
///         +------------------+             +------------------+-----------------+
///
/// An area is selected before or, where the desktop asks itself, on what has been chosen.
bool mayFollow(PreparationStep before, PreparationStep after);

} // namespace vantro::app::flows
