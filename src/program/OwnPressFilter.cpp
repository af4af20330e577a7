#include "program/OwnPressFilter.h"

#include "capture/CaptureClock.h"
#include "capture/OwnPresses.h"

#include <QCoreApplication>
#include <QInputEvent>

namespace vantro::program {

OwnPressFilter::OwnPressFilter() {
    QCoreApplication::instance()->installEventFilter(this);
}

/// Windows get what comes from outside; what they pass on is no other press.
bool OwnPressFilter::eventFilter(QObject* receiver, QEvent* event) {
    const bool isPress = event->type() == QEvent::MouseButtonPress ||
                         event->type() == QEvent::MouseButtonDblClick ||
                         event->type() == QEvent::TabletPress;
    if (isPress && receiver->isWindowType()) {
        const auto milliseconds = static_cast<QInputEvent*>(event)->timestamp();
        capture::OwnPresses::ofThisProgram().note(
            capture::hostTimeOf(static_cast<std::uint32_t>(milliseconds), base::hostNow()));
    }
    return false;
}

} // namespace vantro::program
