#pragma once

#include "ui/Preferences.h"

#include <QObject>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::window::devices {

/// Something that may be attached now. A plain record.
struct AttachedDevice {
    QString name;        ///< tells it from others
    QString description; ///< for people
    bool isDefault = false;
    bool operator==(const AttachedDevice&) const = default;
};

/// Which microphone or camera is recorded: the default one, also when that becomes another, or one
/// that was chosen here, in this run or an earlier one. A chosen one that is not attached is
/// remembered until it returns; meanwhile the default one stands for it. What is recorded is the
/// state's. Main thread.
class DeviceChoice : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    /// The default one first.
    Q_PROPERTY(QStringList names READ names NOTIFY changed)
    Q_PROPERTY(int current READ current NOTIFY changed)
    /// Says in a line that the chosen one is not attached; empty otherwise.
    Q_PROPERTY(QString missing READ missing NOTIFY changed)

  public:
    DeviceChoice(app::AppState& state, ui::Preferences& preferences, ui::DeviceUse use);

    /// What there is now.
    void setDevices(std::vector<AttachedDevice> devices);

    QStringList names() const;
    /// The row of `names` that is recorded.
    int current() const;
    /// One that is no row changes nothing.
    void choose(int row);
    QString missing() const;

    /// Its menu, at a place on the screen.
    Q_INVOKABLE void showMenu(double x, double y) { Q_EMIT menuWanted({qRound(x), qRound(y)}); }

  Q_SIGNALS:
    void changed();
    void menuWanted(QPoint place);

  private:
    const AttachedDevice* chosen() const;
    void tellState();

    app::AppState& m_state;
    ui::Preferences& m_preferences;
    const ui::DeviceUse m_use;
    std::vector<AttachedDevice> m_devices;
    bool m_isKnown = false; ///< what is attached
};

} // namespace vantro::window::devices
