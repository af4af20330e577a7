#include "app/state/AppPhase.h"

#include "base/Fatal.h"

namespace vantro::app {

AppPhase AppPhase::exporting(double progress) {
    base::require(progress >= 0 && progress <= 1, "an export's progress lies between 0 and 1");
    return {Kind::exporting, progress};
}

std::string_view name(AppPhase::Kind kind) {
    switch (kind) {
    case AppPhase::Kind::exporting:
        return "exporting";
    case AppPhase::Kind::idle:
        return "idle";
    case AppPhase::Kind::selecting:
        return "selecting";
    case AppPhase::Kind::recording:
        return "recording";
    case AppPhase::Kind::previewing:
        return "previewing";
    }
    base::fatal("no such phase");
}

bool isAllowedTransition(AppPhase::Kind from, AppPhase::Kind to) {
    using enum AppPhase::Kind;
    if (to == idle)
        return true;
    switch (from) {
    case idle:
        return to == selecting || to == recording || to == previewing;
    case selecting:
        return to == recording;
    case recording:
        return to == previewing;
    case previewing:
    case exporting:
        return to == exporting || to == previewing;
    }
    base::fatal("no such phase");
}

} // namespace vantro::app
