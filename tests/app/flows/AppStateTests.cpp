#include "app/flows/ScriptedServices.h"
#include "app/state/AppState.h"

#include <cmath>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::app::flows {
namespace {

using Kind = AppPhase::Kind;

constexpr std::array allPhases{Kind::exporting, Kind::idle, Kind::selecting, Kind::recording,
                               Kind::previewing};

AppPhase phase(Kind kind) {
    return {kind, 0};
}

/// The way from a fresh state to a phase.
std::vector<Kind> wayTo(Kind kind) {
    switch (kind) {
    case Kind::exporting:
        return {Kind::recording, Kind::previewing, Kind::exporting};
    case Kind::previewing:
        return {Kind::recording, Kind::previewing};
    case Kind::idle:
        return {};
    default:
        return {kind};
    }
}

TEST(AppPhase, OnlyTheTransitionsOfTheTableAreAllowed) {
    const std::set<std::pair<Kind, Kind>> table{
        {Kind::idle, Kind::selecting},        {Kind::idle, Kind::recording},
        {Kind::idle, Kind::previewing},       {Kind::selecting, Kind::recording},
        {Kind::recording, Kind::previewing},  {Kind::previewing, Kind::exporting},
        {Kind::previewing, Kind::previewing}, {Kind::exporting, Kind::exporting},
        {Kind::exporting, Kind::previewing}};
    for (const auto from : allPhases)
        for (const auto to : allPhases)
            EXPECT_EQ(isAllowedTransition(from, to), to == Kind::idle || table.contains({from, to}))
                << name(from) << " to " << name(to);
}

TEST(AppPhaseDeathTest, AnyOtherTransitionEndsTheProgram) {
    for (const auto from : allPhases) {
        AppState state(1);
        for (const auto step : wayTo(from))
            state.setPhase(phase(step));
        for (const auto to : allPhases) {
            if (from != to && !isAllowedTransition(from, to)) {
                EXPECT_DEATH(state.setPhase(phase(to)), "no phase leads from")
                    << name(from) << " to " << name(to);
            }
        }
    }
}

TEST(AppPhaseDeathTest, ProgressLiesBetweenNoneAndAll) {
    EXPECT_DEATH(AppPhase::exporting(1.01), "progress");
    EXPECT_DEATH(AppPhase::exporting(std::nan("")), "progress");
}

TEST(AppState, BeginsReadyToSelectAnAreaOfTheMainDisplay) {
    const AppState state(7);
    EXPECT_EQ(state.phase(), AppPhase::idle());
    EXPECT_EQ(state.captureMode(), model::CaptureMode::area);
    EXPECT_EQ(state.selectedRect(), model::Rect{});
    EXPECT_EQ(state.selectedDisplayID(), 7U);
    EXPECT_TRUE(state.systemAudioEnabled());
    EXPECT_FALSE(state.microphoneAudioEnabled());
    EXPECT_FALSE(state.webcamEnabled());
    EXPECT_EQ(state.cursorScale(), 3.0);
    EXPECT_EQ(state.webcamSize(), 0.2);
    EXPECT_EQ(state.backgroundSettings(), model::BackgroundSettings{});
    ASSERT_EQ(state.segments().size(), 1U);
    EXPECT_EQ(state.segments().front().endFraction, 1.0);
    EXPECT_THAT(state.recordingName(), testing::ContainsRegex("^vantro_[-0-9]+_[-0-9]+$"));
    EXPECT_FALSE(state.document().project());
}

TEST(AppState, TellsOfAChangeOnceAndOfAnEqualWriteNotAtAll) {
    AppState state(1);
    int rects = 0;
    int windows = 0;
    int errors = 0;
    int shown = 0;
    QObject::connect(&state, &AppState::selectedRectChanged, [&] { ++rects; });
    QObject::connect(&state, &AppState::selectedWindowChanged, [&] { ++windows; });
    QObject::connect(&state, &AppState::errorChanged, [&] { ++errors; });
    QObject::connect(&state, &AppState::showErrorChanged, [&] { ++shown; });
    for (int i = 0; i < 2; ++i) {
        state.setSelectedRect({0, 0, 800, 600});
        state.setSelectedWindow(test::windowOf(3, "t"));
        state.setError("no encoder", model::VantroError::Kind::exportFailed);
    }
    EXPECT_EQ(rects, 1);
    EXPECT_EQ(windows, 1);
    EXPECT_EQ(errors, 1);
    EXPECT_EQ(shown, 1);

    state.setSelectedWindow(test::windowOf(3, "u"));
    state.setError("no encoder", model::VantroError::Kind::projectSaveFailed);
    EXPECT_EQ(windows, 2);
    EXPECT_EQ(errors, 2);
    EXPECT_EQ(shown, 1) << "the alert is up already";
}

TEST(AppState, ResetClearsTheRecordingAndItsEditButKeepsTheCaptureChoices) {
    AppState state(1);
    state.setCaptureMode(model::CaptureMode::window);
    state.setSystemAudioEnabled(false);
    state.setSelectedRect({1, 2, 300, 200});
    state.setRecordingName("demo");
    model::BackgroundSettings background;
    background.padding = 0.2;
    state.setBackgroundSettings(background);
    state.setSelectedWindow(test::windowOf(3, "t"));
    state.show({"demo", model::Recording("/r/recording.mov", model::RecordingMetadata{}),
                state.document().edit()},
               "/p.vantro");
    state.setEditableClickEvents({{model::ClickEvent{}}});
    state.setSelectedClickID(model::Uuid::random());
    state.setSelectedSegmentID(model::Uuid::random());
    state.setSegments({{model::TimelineSegment{}, model::TimelineSegment{}}});
    state.setWebcamPosition(model::WebcamPosition::topLeft);
    state.setWebcamSize(0.4);
    state.setCanvasAspectRatio(model::CanvasAspectRatio::ratio1x1);

    state.reset();

    EXPECT_EQ(state.phase(), AppPhase::idle());
    EXPECT_FALSE(state.selectedWindow() || state.recordingPath() || state.metadataPath() ||
                 state.metadata() || state.projectPath() || state.selectedClickID() ||
                 state.selectedSegmentID());
    EXPECT_TRUE(state.editableClickEvents().empty());
    ASSERT_EQ(state.segments().size(), 1U);
    EXPECT_EQ(state.segments().front().endFraction, 1.0);
    EXPECT_EQ(state.cursorScale(), 2.0);
    EXPECT_EQ(state.webcamPosition(), model::WebcamPosition::bottomRight);
    EXPECT_EQ(state.webcamSize(), 0.2);
    EXPECT_EQ(state.canvasAspectRatio(), model::CanvasAspectRatio::automatic);

    EXPECT_EQ(state.captureMode(), model::CaptureMode::window);
    EXPECT_FALSE(state.systemAudioEnabled());
    EXPECT_EQ(state.selectedRect(), (model::Rect{1, 2, 300, 200}));
    EXPECT_EQ(state.recordingName(), "demo");
    EXPECT_EQ(state.backgroundSettings().padding, 0.2);
}

} // namespace
} // namespace vantro::app::flows
