#pragma once

#include "editor/sidebar/SettingsGroup.h"

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::sidebar {

/// How the sound tracks are heard: their volumes, 0 to 2 times as recorded, and whether the
/// microphone's noise is taken out.
class SoundGroup : public SettingsGroup {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool hasSystemAudio READ hasSystemAudio NOTIFY changed)
    Q_PROPERTY(bool hasMicrophone READ hasMicrophone NOTIFY changed)
    Q_PROPERTY(double systemAudio READ systemAudio WRITE setSystemAudio NOTIFY changed)
    Q_PROPERTY(bool noiseReduced READ isNoiseReduced WRITE setNoiseReduced NOTIFY changed)
    Q_PROPERTY(double microphone READ microphone WRITE setMicrophone NOTIFY changed)

  public:
    SoundGroup(app::AppState& state, EditSteps& steps);

    bool hasSystemAudio() const;
    bool hasMicrophone() const;
    double systemAudio() const { return edit().systemAudioVolume; }
    void setSystemAudio(double volume);
    double microphone() const { return edit().microphoneVolume; }
    void setMicrophone(double volume);
    bool isNoiseReduced() const { return edit().microphoneNoiseReduced; }
    void setNoiseReduced(bool reduced);

    Q_INVOKABLE void reset();
};

} // namespace vantro::editor::sidebar
