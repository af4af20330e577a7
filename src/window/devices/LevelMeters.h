#pragma once

#include "app/flows/MainTimers.h"
#include "capture/SoundMeter.h"
#include "capture/SoundSource.h"
#include "window/devices/SourceMeter.h"

#include <QObject>
#include <functional>
#include <memory>
#include <string>

#include <QtQml/qqmlregistration.h>

namespace vantro::app {
class AppState;
} // namespace vantro::app

namespace vantro::ui {
class ActionGuard;
} // namespace vantro::ui

namespace vantro::window::devices {

/// How loud the sounds are that are switched on: before a recording by meters of their own, while
/// one runs by what its recorder tells. Nothing is listened to, and no timer runs, unless somebody
/// can see it. Main thread.
class LevelMeters : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(vantro::window::devices::SourceMeter* system READ system CONSTANT)
    Q_PROPERTY(vantro::window::devices::SourceMeter* microphone READ microphone CONSTANT)
    /// Whether the window can be seen.
    Q_PROPERTY(bool watched MEMBER m_isWatched WRITE setWatched NOTIFY watchedChanged)

  public:
    using MakeMeter = std::function<std::unique_ptr<capture::SoundMeter>(
        capture::SoundKind kind, const std::string& device)>;

    /// What it is given outlives it.
    LevelMeters(ui::ActionGuard& guard, app::AppState& state, app::flows::MainTimers& timers,
                MakeMeter makeMeter);

    SourceMeter* system() { return &m_system.view; }
    SourceMeter* microphone() { return &m_microphone.view; }
    void setWatched(bool watched);

  Q_SIGNALS:
    void watchedChanged();

  private:
    struct Source {
        capture::SoundKind kind;
        SourceMeter view{};
        std::unique_ptr<capture::SoundMeter> meter{};
        std::string device{}; ///< of the meter
    };

    void update();
    void update(Source& source, bool isWanted, const std::string& device);
    void read();
    void read(Source& source, base::HostTime now) const;

    ui::ActionGuard& m_guard;
    app::AppState& m_state;
    app::flows::MainTimers& m_timers;
    const MakeMeter m_makeMeter;
    bool m_isWatched = false;
    bool m_isRecording = false;
    Source m_system{capture::SoundKind::system};
    Source m_microphone{capture::SoundKind::microphone};
    std::unique_ptr<app::flows::MainTimer> m_timer; ///< while there is something to read
};

} // namespace vantro::window::devices
