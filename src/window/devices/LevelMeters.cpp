#include "window/devices/LevelMeters.h"

#include "app/state/AppState.h"
#include "capture/Recorder.h"
#include "ui/ActionGuard.h"

#include <chrono>

namespace vantro::window::devices {
namespace {

using capture::SoundMeter;

// 17 times a second: a meter that moves less often looks as if it jumped.
constexpr auto interval = std::chrono::milliseconds(60);

} // namespace

LevelMeters::LevelMeters(ui::ActionGuard& guard, app::AppState& state,
                         app::flows::MainTimers& timers, MakeMeter makeMeter)
    : m_guard(guard), m_state(state), m_timers(timers), m_makeMeter(std::move(makeMeter)) {
    const auto follow = [this](auto& object, auto signal) {
        connect(&object, signal, this, qOverload<>(&LevelMeters::update));
    };
    follow(guard, &ui::ActionGuard::changed);
    for (const auto signal :
         {&app::AppState::systemAudioEnabledChanged, &app::AppState::microphoneAudioEnabledChanged,
          &app::AppState::microphoneDeviceChanged})
        follow(state, signal);
}

void LevelMeters::setWatched(bool watched) {
    if (m_isWatched == watched)
        return;
    m_isWatched = watched;
    Q_EMIT watchedChanged();
    update();
}

void LevelMeters::update() {
    const auto screen = m_guard.screen();
    const bool isChoosing = m_isWatched && screen == ui::Screen::controls;
    m_isRecording = m_isWatched && screen == ui::Screen::recording;
    update(m_system,
           isChoosing && m_state.systemAudioEnabled() && m_guard.systemAudioMissing().isEmpty(),
           {});
    update(m_microphone,
           isChoosing && m_state.microphoneAudioEnabled() && m_guard.microphoneMissing().isEmpty(),
           m_state.microphoneDevice());
    const bool isTicking = m_isRecording || m_system.meter || m_microphone.meter;
    if (!isTicking)
        m_timer.reset();
    else if (!m_timer)
        m_timer = m_timers.repeat(interval, [this] { read(); });
    read();
}

void LevelMeters::update(Source& source, bool isWanted, const std::string& device) {
    if (isWanted && source.meter && source.device == device)
        return;
    source.meter.reset();
    source.device = device;
    if (isWanted)
        source.meter = m_makeMeter(source.kind, device);
}

void LevelMeters::read() {
    const auto now = base::hostNow();
    read(m_system, now);
    read(m_microphone, now);
}

void LevelMeters::read(Source& source, base::HostTime now) const {
    std::optional<SoundMeter::Reading> reading;
    if (source.meter)
        reading = source.meter->reading();
    const auto& recorder = m_state.recorder();
    if (m_isRecording && recorder)
        for (const auto& sound : recorder->statistics().sounds)
            if (sound.kind == source.kind)
                reading = {.level = sound.level, .isSilent = sound.isSilent};
    source.view.show(reading, now);
}

} // namespace vantro::window::devices
