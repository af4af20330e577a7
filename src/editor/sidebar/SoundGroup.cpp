#include "editor/sidebar/SoundGroup.h"

namespace vantro::editor::sidebar {
namespace {

constexpr double loudest = 2;

bool differ(const model::Edit& a, const model::Edit& b) {
    return a.systemAudioVolume != b.systemAudioVolume || a.microphoneVolume != b.microphoneVolume ||
           a.microphoneNoiseReduced != b.microphoneNoiseReduced;
}

} // namespace

SoundGroup::SoundGroup(app::AppState& state, EditSteps& steps)
    : SettingsGroup(state, steps, differ) {}

bool SoundGroup::hasSystemAudio() const {
    return state().metadata() != nullptr && state().metadata()->hasSystemAudio;
}

bool SoundGroup::hasMicrophone() const {
    return state().metadata() != nullptr && state().metadata()->hasMicrophoneAudio;
}

void SoundGroup::setSystemAudio(double volume) {
    setNumber(QT_TRANSLATE_NOOP("Edit", "Change System Audio Volume"),
              &model::Edit::systemAudioVolume, volume, 0, loudest);
}

void SoundGroup::setMicrophone(double volume) {
    setNumber(QT_TRANSLATE_NOOP("Edit", "Change Microphone Volume"), &model::Edit::microphoneVolume,
              volume, 0, loudest);
}

void SoundGroup::setNoiseReduced(bool reduced) {
    change(reduced ? QT_TRANSLATE_NOOP("Edit", "Reduce Noise")
                   : QT_TRANSLATE_NOOP("Edit", "Keep Noise"),
           [&](auto& edit) { edit.microphoneNoiseReduced = reduced; });
}

void SoundGroup::reset() {
    change(QT_TRANSLATE_NOOP("Edit", "Reset Sound"), [](auto& edit) {
        edit.systemAudioVolume = model::Edit().systemAudioVolume;
        edit.microphoneVolume = model::Edit().microphoneVolume;
        edit.microphoneNoiseReduced = model::Edit().microphoneNoiseReduced;
    });
}

} // namespace vantro::editor::sidebar
