#pragma once

#include <QObject>

namespace vantro::program {

/// Takes note of presses in our windows, where whoever records clicks looks for them. From its
/// construction on, after the application object's; main thread.
class OwnPressFilter : public QObject {
  public:
    OwnPressFilter();

    bool eventFilter(QObject* receiver, QEvent* event) override;
};

} // namespace vantro::program
