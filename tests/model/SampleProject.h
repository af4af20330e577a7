#pragma once

#include "model/Project.h"

namespace vantro::model {

inline Uuid sampleID(char last) {
    return *Uuid::parse(std::string("0A0B0C0D-0000-4000-8000-00000000000") + last);
}

inline const std::filesystem::path sampleMovie = "/p.vantro/recording.mov";

/// Small and sound; hardly a value is a default or equal to another of its record, here and below.
inline RecordingMetadata sampleMetadata() {
    return {.startTime = 0.25,
            .endTime = 12.5,
            .captureRect = {-1920, 10, 1280, 720},
            .displayID = 4294967295,
            .frameRate = 30,
            .displayScaleFactor = 2,
            .cursorPositions = {{1.5, 2.5, 0.016}, {-3, 4, 0.032}},
            .clickEvents = {{.id = sampleID('1'), .x = 5, .y = 6, .timestamp = 1}},
            .hasSystemAudio = true,
            .hasMicrophoneAudio = false,
            .hasWebcam = true};
}

inline Project sampleProject() {
    Edit edit;
    edit.clickEvents = {{{sampleID('2'), 7, 8, 2, true, 0.5, 0.75, 2.5}}};
    edit.segments = {{{sampleID('3'), 0, 0.5, 2}, {sampleID('4'), 0.625, 1, 1.5}}};
    edit.background = {BackgroundColor{0.1, 0.2, 0.3}, 0.125, 16};
    edit.canvasAspectRatio = CanvasAspectRatio::ratio4x3;
    edit.cursorScale = 2.25;
    edit.webcamPosition = WebcamPosition::topLeft;
    edit.webcamSize = 0.3;
    return {"vantro_2024-03-05_14-07-09", Recording(sampleMovie, sampleMetadata()), edit};
}

} // namespace vantro::model
