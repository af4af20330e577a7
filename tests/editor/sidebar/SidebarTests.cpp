#include "editor/sidebar/SidebarFixture.h"

namespace vantro::editor::sidebar {
namespace {

struct Button {
    const char* name;
    const char* step;
    bool (*happened)(const model::Edit&);
};

TEST_F(SidebarTest, EveryButtonDoesOneStep) {
    for (const auto& [name, step, happened] : std::initializer_list<Button>{
             {"preset6", "Change Background",
              [](const auto& edit) {
                  return std::get<model::BackgroundColor>(edit.background.type).hexString() ==
                         "#6FA8DC";
              }},
             {"backgroundReset", "Reset Background",
              [](const auto& edit) {
                  return edit.background.type == model::BackgroundType(model::BackgroundColor());
              }},
             {"frameReset", "Reset Frame",
              [](const auto& edit) {
                  return edit.background.padding == 0.08 && edit.background.cornerRadius == 32 &&
                         edit.canvasAspectRatio == model::CanvasAspectRatio::automatic;
              }},
             {"pointerShown", "Hide Pointer",
              [](const auto& edit) { return edit.cursorScale == 0; }},
             {"pointerReset", "Reset Pointer",
              [](const auto& edit) { return edit.cursorScale == 3; }},
             {"webcamShown", "Hide Webcam", [](const auto& edit) { return edit.webcamHidden; }},
             {"webcamMirrored", "Mirror Webcam",
              [](const auto& edit) { return edit.webcamMirrored; }},
             {"webcamReset", "Reset Webcam",
              [](const auto& edit) { return edit.webcamSize == 0.2 && !edit.webcamHidden; }},
             {"noiseReduced", "Keep Noise",
              [](const auto& edit) { return !edit.microphoneNoiseReduced; }},
             {"soundReset", "Reset Sound",
              [](const auto& edit) {
                  return edit.systemAudioVolume == 1 && !edit.microphoneNoiseReduced;
              }},
             {"zoomReset", "Reset Zoom",
              [](const auto& edit) { return zoom(edit).zoomLevel == 1.5; }},
             {"deleteZoom", "Delete Zoom",
              [](const auto& edit) { return edit.clickEvents.size() == 1; }},
             {"allZoomsReset", "Reset All Zooms",
              [](const auto& edit) { return zoom(edit, 1).zoomLevel == 1.5; }},
             {"removeAllZooms", "Remove All Zooms",
              [](const auto& edit) { return edit.clickEvents.empty(); }},
             {"deleteSegment", "Delete Segment",
              [](const auto& edit) { return edit.segments.size() == 1; }}}) {
        auto start = sampleEdit();
        start.background.padding = 0.2;
        start.canvasAspectRatio = model::CanvasAspectRatio::ratio1x1;
        start.cursorScale = 5;
        start.webcamSize = 0.4;
        start.systemAudioVolume = 0.5;
        start.microphoneNoiseReduced = true;
        start.background.type = model::BackgroundColor{.red = 1, .green = 0.5, .blue = 0};
        open(start);
        clickRevealed(name);
        EXPECT_TRUE(happened(edit())) << name;
        EXPECT_EQ(state.document().undoName(), step);
        state.document().undo();
        EXPECT_FALSE(state.document().canUndo()) << name;
        EXPECT_TRUE(edit() == start) << name;
    }
}

TEST_F(SidebarTest, AHiddenPointerComesBackAsItWas) {
    auto start = sampleEdit();
    start.cursorScale = 5;
    open(start);
    clickRevealed("pointerShown");
    EXPECT_FALSE(shows("pointerScaleSlider"));
    clickRevealed("pointerShown");
    EXPECT_EQ(edit().cursorScale, 5);
}

TEST_F(SidebarTest, PickersShowAndChooseByPointerAndArrowKeys) {
    open();
    const auto choose = [this](const char* name, int index) {
        auto& picker = item(name);
        const double width = picker.width() / picker.property("choices").toList().size();
        const auto at = picker.mapToScene({(index + 0.5) * width, picker.height() / 2});
        QTest::mouseClick(&window(), Qt::LeftButton, {}, at.toPoint());
        settle();
    };
    reveal("canvas");
    choose("canvas", 3);
    EXPECT_EQ(edit().canvasAspectRatio, model::CanvasAspectRatio::ratio1x1);
    key(Qt::Key_Right);
    EXPECT_EQ(edit().canvasAspectRatio, model::CanvasAspectRatio::ratio9x16);
    reveal("webcamCorner");
    choose("webcamCorner", 0);
    EXPECT_EQ(edit().webcamPosition, model::WebcamPosition::topLeft);
    reveal("speedPresets");
    choose("speedPresets", 4);
    EXPECT_EQ(edit().segments[0].speed, 4);
}

TEST_F(SidebarTest, WhatCannotApplyIsNotShown) {
    auto bare = sampleEdit();
    bare.clickEvents = {};
    open(bare, false);
    state.setSelectedSegmentID({});
    settle();
    for (const auto* section : {"zoom", "segment", "allZooms", "webcam", "sound"})
        EXPECT_FALSE(shows(section)) << section;
    for (const auto* section : {"background", "frame", "pointer"})
        EXPECT_TRUE(shows(section)) << section;
    open();
    for (const auto* section : {"zoom", "segment", "allZooms", "webcam", "sound"})
        EXPECT_TRUE(shows(section)) << section;
    state.setEditableClickEvents({});
    settle();
    EXPECT_FALSE(shows("zoom")) << "what was selected is gone";
}

} // namespace
} // namespace vantro::editor::sidebar
