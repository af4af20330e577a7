#include "model/Edit.h"
#include "model/VantroError.h"

#include <gtest/gtest.h>

namespace vantro::model {
namespace {

TEST(Edit, BeginsWithAllOfTheRecordingOnADarkBackground) {
    const Edit edit;
    EXPECT_EQ(std::get<BackgroundColor>(edit.background.type), (BackgroundColor{0.15, 0.15, 0.15}));
    EXPECT_EQ(edit.background.padding, 0.08);
    EXPECT_EQ(edit.background.cornerRadius, 32);
    const TimelineSegment all{
        .id = edit.segments.list().at(0).id, .startFraction = 0, .endFraction = 1, .speed = 1};
    EXPECT_EQ(edit.segments.list(), std::vector{all});
    EXPECT_EQ(edit.canvasAspectRatio, CanvasAspectRatio::automatic);
    EXPECT_EQ(edit.cursorScale, 3);
    EXPECT_EQ(edit.webcamPosition, WebcamPosition::bottomRight);
    EXPECT_EQ(edit.webcamSize, 0.2);
    EXPECT_FALSE(edit.webcamHidden || edit.webcamMirrored);
    EXPECT_EQ(edit.systemAudioVolume, 1);
    EXPECT_EQ(edit.microphoneVolume, 1);
}

TEST(VantroError, SaysWhatWentWrongAndWhatToDo) {
    using enum VantroError::Kind;
    const struct {
        VantroError::Kind kind;
        const char* description;
        const char* suggestion;
    } texts[]{
        {captureStartFailed, "Failed to start screen capture: why",
         "Try selecting a different area or restarting the app."},
        {assetWriterFailed, "Failed to write video: why", ""},
        {exportFailed, "Export failed: why", ""},
        {projectSaveFailed, "Failed to save project: why", ""},
        {projectOpenFailed, "Failed to open project: why", ""},
        {screenRecordingPermissionDenied,
         "Screen recording permission is required to capture your screen.",
         "Allow screen sharing for Vantro in your desktop's settings, then try again."},
        {noRecordingData, "No recording data available.",
         "Record a screen capture first before previewing or exporting."},
        {invalidSelection, "Invalid screen area selected.", ""},
    };
    for (const auto& [kind, description, suggestion] : texts) {
        const VantroError error(kind, "why");
        EXPECT_EQ(error.description(), description);
        EXPECT_EQ(error.recoverySuggestion(), suggestion);
    }
}

} // namespace
} // namespace vantro::model
