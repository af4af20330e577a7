#pragma once

#include "model/Project.h"

namespace vantro::model {

inline Uuid sampleID(char last) {
    return *Uuid::parse(std::string("0A0B0C0D-0000-4000-8000-00000000000") + last);
}

inline const std::filesystem::path sampleMovie = "/p.vantro/recording.mov";

/// Small and sound; no value is a default or equal to another of its record, here and below.
inline RecordingMetadata sampleMetadata() {
    return {.startTime = 0.25,
            .endTime = 12.5,
            .captureRect = {.x = -1920, .y = 10, .width = 1280, .height = 720},
            .displayID = 4294967295,
            .frameRate = 30,
            .displayScaleFactor = 2,
            .cursorPositions = {{.x = 1.5, .y = 2.5, .timestamp = 0.016},
                                {.x = -3, .y = 4, .timestamp = 0.032}},
            .clickEvents = {{.id = sampleID('1'), .x = 5, .y = 6, .timestamp = 1}},
            .hasSystemAudio = true,
            .hasMicrophoneAudio = false,
            .hasWebcam = true};
}

inline Edit sampleEdit() {
    Edit edit;
    edit.clickEvents = {{{.id = sampleID('2'),
                          .x = 7,
                          .y = 8,
                          .timestamp = 2,
                          .isRightClick = true,
                          .startOffset = 0.5,
                          .endOffset = 0.75,
                          .zoomLevel = 2.5}}};
    edit.segments = {
        {{.id = sampleID('3'), .startFraction = 0, .endFraction = 0.5, .speed = 2},
         {.id = sampleID('4'), .startFraction = 0.625, .endFraction = 1, .speed = 1.5}}};
    edit.background = {
        .type = BackgroundColor{0.1, 0.2, 0.3}, .padding = 0.125, .cornerRadius = 16};
    edit.canvasAspectRatio = CanvasAspectRatio::ratio4x3;
    edit.cursorScale = 2.25;
    edit.webcamPosition = WebcamPosition::topLeft;
    edit.webcamSize = 0.3;
    return edit;
}

inline Project sampleProject(Edit edit = sampleEdit()) {
    return {.name = "vantro_2024-03-05_14-07-09",
            .recording = Recording(sampleMovie, sampleMetadata()),
            .edit = std::move(edit)};
}

} // namespace vantro::model
