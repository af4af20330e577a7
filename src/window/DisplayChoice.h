#pragma once

#include "capture/ShareableContent.h"

#include <QObject>
#include <QStringList>
#include <functional>

#include <QtQml/qqmlregistration.h>

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::window {

/// Which of the attached displays Screen mode records; the main one stands first. The choice itself
/// is the state's `selectedDisplayID`. Main thread.
class DisplayChoice : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QStringList names READ names NOTIFY changed)
    /// The first one when the chosen display is not attached.
    Q_PROPERTY(int current READ current WRITE setCurrent NOTIFY changed)

  public:
    using Lister = std::function<std::vector<capture::ShareableDisplay>()>;

    DisplayChoice(app::AppState& state, Lister lister);

    /// Asks for the displays again.
    void refresh();
    QStringList names() const;
    int current() const;
    void setCurrent(int index);

  Q_SIGNALS:
    void changed();

  private:
    app::AppState& m_state;
    Lister m_lister;
    std::vector<capture::ShareableDisplay> m_displays;
};

} // namespace vantro::window
