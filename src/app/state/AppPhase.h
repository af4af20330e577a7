#pragma once

#include <string_view>

namespace vantro::app {

/// Where the application is, and in `exporting` how far: a fraction from 0 to 1, else 0.
struct AppPhase {
    enum class Kind { exporting, idle, selecting, recording, previewing };

    Kind kind = Kind::idle;
    double progress = 0;

    static AppPhase exporting(double progress);
    static constexpr AppPhase idle() { return {Kind::idle, 0}; }
    static constexpr AppPhase selecting() { return {Kind::selecting, 0}; }
    static constexpr AppPhase recording() { return {Kind::recording, 0}; }
    static constexpr AppPhase previewing() { return {Kind::previewing, 0}; }

    bool operator==(const AppPhase&) const = default;
};

std::string_view name(AppPhase::Kind kind);

/// Whether the application may go from one phase to another (the same one included).
///
///                 area mode            area chosen
///       +-------> selecting --------------------------+
///       |             | overlay cancelled             |
///       |             v                               v
///       +----------- idle ---- screen, window ----> recording
///                    |  ^                             |  |
///     project opened |  +--- start or stop failed ----+  | stopped, metadata written
///                    v                                   v
///                  previewing <--------------------------+
///                    |  ^   (project opened: previewing again)
///           progress |  | finished, failed, cancelled
///                    v  |
///                  exporting (next progress: exporting again)
///
/// A new recording leads from any phase to idle.
bool isAllowedTransition(AppPhase::Kind from, AppPhase::Kind to);

} // namespace vantro::app
