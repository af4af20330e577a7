#include "app/flows/PreparationStep.h"

namespace vantro::app::flows {

bool mayFollow(PreparationStep before, PreparationStep after) {
    switch (after) {
        using enum PreparationStep;
    case none:
        return true;
    case pickingWindow:
        return before == none;
    case selectingArea:
        return before == none || before == choosing;
    case choosing:
        return before == none || before == pickingWindow || before == selectingArea;
    case confirming:
        return before == choosing;
    case countingDown:
        return before == choosing || before == selectingArea;
    }
    return false;
}

} // namespace vantro::app::flows
