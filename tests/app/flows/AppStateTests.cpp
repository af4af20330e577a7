#include "app/flows/ScriptedServices.h"
#include "app/state/AppState.h"

#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::app::flows {
namespace {

using testing::ElementsAre;

model::Project projectAt(const std::filesystem::path& movie) {
    return {"demo", model::Recording(movie, model::RecordingMetadata{}), {}};
}

/// Notes the signals of the fields that a recording and its edit have, by name.
class SignalLog {
  public:
    explicit SignalLog(AppState& state) {
        const std::pair<void (AppState::*)(), const char*> signals[]{
            {&AppState::phaseChanged, "phase"},
            {&AppState::selectedWindowChanged, "window"},
            {&AppState::recordingPathChanged, "recording"},
            {&AppState::metadataPathChanged, "metadataPath"},
            {&AppState::metadataChanged, "metadata"},
            {&AppState::segmentsChanged, "segments"},
            {&AppState::selectedSegmentIDChanged, "segment"},
            {&AppState::editableClickEventsChanged, "clicks"},
            {&AppState::selectedClickIDChanged, "click"},
            {&AppState::cursorScaleChanged, "cursorScale"},
            {&AppState::canvasAspectRatioChanged, "canvas"},
            {&AppState::backgroundSettingsChanged, "background"},
            {&AppState::webcamPositionChanged, "webcamPosition"},
            {&AppState::webcamSizeChanged, "webcamSize"},
            {&AppState::recordingNameChanged, "name"},
            {&AppState::projectPathChanged, "project"}};
        for (const auto& [changed, name] : signals)
            QObject::connect(&state, changed, [this, name] { m_names.emplace_back(name); });
    }
    std::vector<std::string> take() { return std::exchange(m_names, {}); }

  private:
    std::vector<std::string> m_names;
};

/// Every field of the edit at another value than a reset leaves.
model::Edit otherEdit() {
    model::Edit edit;
    edit.clickEvents = {{model::ClickEvent{}}};
    edit.segments = {{model::TimelineSegment{}, model::TimelineSegment{}}};
    edit.background.padding = 0.2;
    edit.canvasAspectRatio = model::CanvasAspectRatio::ratio1x1;
    edit.cursorScale = 1;
    edit.webcamPosition = model::WebcamPosition::topLeft;
    edit.webcamSize = 0.4;
    edit.webcamHidden = edit.webcamMirrored = edit.microphoneNoiseReduced = true;
    edit.systemAudioVolume = edit.microphoneVolume = 0.5;
    return edit;
}

TEST(AppPhaseDeathTest, OnlyDrawnTransitionsAndProgressesAreAllowed) {
    AppState state(1);
    EXPECT_DEATH(state.setPhase(AppPhase::exporting(0.5)), "no phase leads from idle");
    EXPECT_DEATH(AppPhase::exporting(1.01), "progress");
    EXPECT_DEATH(AppPhase::exporting(std::nan("")), "progress");
}

TEST(AppState, TellsOfAChangeOnceAndOfAnEqualWriteNotAtAll) {
    AppState state(7);
    EXPECT_EQ(state.selectedDisplayID(), 7U);
    SignalLog log(state);
    int errors = 0;
    QObject::connect(&state, &AppState::errorChanged, [&] { ++errors; });
    QObject::connect(&state, &AppState::showErrorChanged, [&] { ++errors; });
    for (int i = 0; i < 2; ++i) {
        state.setSelectedWindow(test::windowOf(3, "t"));
        state.setCursorScale(1);
        state.setSegments({{model::TimelineSegment{.id = {}, .speed = 2}}});
        state.setError("no encoder", model::VantroError::Kind::exportFailed);
    }
    EXPECT_THAT(log.take(), ElementsAre("window", "cursorScale", "segments"));
    EXPECT_EQ(errors, 2) << "the error and the alert";
    state.setError("no encoder", model::VantroError::Kind::projectSaveFailed);
    EXPECT_EQ(errors, 3) << "the alert is up already";
}

TEST(AppState, ShowsAProjectAndResetsInTheStatedOrder) {
    AppState state(1);
    state.setCaptureMode(model::CaptureMode::window);
    state.setSelectedSegmentID(model::Uuid::random());
    SignalLog log(state);
    QObject::connect(&state, &AppState::recordingPathChanged, [&state] {
        EXPECT_EQ(state.projectPath().has_value(), state.document().recording().has_value())
            << "nothing half-written is seen";
    });
    auto project = projectAt("/p.vantro/recording.mov");
    project.edit = otherEdit();
    state.show(project, "/p.vantro");
    EXPECT_THAT(log.take(), ElementsAre("recording", "metadata", "clicks", "segments", "segment",
                                        "background", "canvas", "cursorScale", "webcamPosition",
                                        "webcamSize", "name", "project", "phase"));
    EXPECT_EQ(state.document().project(), project);

    state.setSelectedWindow(test::windowOf(3, "t"));
    state.setSelectedSegmentID(model::Uuid::random());
    state.setSelectedClickID(model::Uuid::random());
    log.take();
    state.reset();
    EXPECT_THAT(log.take(), ElementsAre("phase", "window", "recording", "metadata", "segments",
                                        "segment", "clicks", "click", "cursorScale", "canvas",
                                        "webcamPosition", "webcamSize", "project"));
    model::Edit expected;
    expected.segments = state.segments();
    expected.cursorScale = 2;
    expected.background.padding = 0.2;
    EXPECT_EQ(state.document().edit(), expected);
    EXPECT_EQ(state.segments().size(), 1U);
    EXPECT_EQ(state.recordingName(), "demo");
    EXPECT_EQ(state.captureMode(), model::CaptureMode::window);
    EXPECT_FALSE(state.document().canUndo());
}

TEST(AppState, TellsOfTheFieldsThatAnUndoBringsBack) {
    AppState state(1);
    state.show(projectAt("/r/recording.mov"));
    const auto before = state.document().edit();
    const auto other = otherEdit();
    state.document().apply(other, {"Change Everything"});
    EXPECT_EQ(state.document().undoName(), "Change Everything");
    SignalLog log(state);
    state.document().undo();
    EXPECT_EQ(state.document().edit(), before);
    const std::vector<std::string> all{"clicks",      "segments",       "background", "canvas",
                                       "cursorScale", "webcamPosition", "webcamSize"};
    EXPECT_EQ(log.take(), all);
    state.document().redo();
    EXPECT_EQ(state.document().edit(), other);
    EXPECT_EQ(log.take(), all);
}

/// A document with a recording whose changes are counted.
class EditDocumentTest : public testing::Test {
  protected:
    EditDocumentTest() {
        document.open(projectAt("/r/recording.mov"));
        QObject::connect(&document, &EditDocument::changed, [this] { ++changes; });
    }
    void scaleCursor(double scale, std::string key = {}) {
        auto edit = document.edit();
        edit.cursorScale = scale;
        document.apply(edit,
                       {.name = "Scale to " + std::to_string(scale), .mergeKey = std::move(key)});
    }

    EditDocument document{"demo"};
    int changes = 0;
};

TEST_F(EditDocumentTest, CountsTheStepsOfOneDragAsOne) {
    for (const double scale : {1.0, 1.5, 2.0})
        scaleCursor(scale, "first drag");
    scaleCursor(2.5, "second drag");
    scaleCursor(2.5, "third drag"); // changes nothing
    EXPECT_EQ(changes, 4);
    document.undo();
    EXPECT_EQ(document.edit().cursorScale, 2);
    scaleCursor(2.25, "first drag"); // goes on after an undo, which ends the step
    EXPECT_FALSE(document.canRedo());
    document.undo();
    document.undo();
    EXPECT_EQ(document.edit().cursorScale, 3);
    EXPECT_FALSE(document.canUndo());
    document.redo();
    EXPECT_EQ(document.edit().cursorScale, 2);
    EXPECT_EQ(changes, 9) << "each call told once";
}

TEST_F(EditDocumentTest, NamesItsStepsBothWays) {
    scaleCursor(1);
    scaleCursor(2);
    document.undo();
    EXPECT_EQ(document.undoName(), "Scale to 1.000000");
    EXPECT_EQ(document.redoName(), "Scale to 2.000000");
    document.undo();
    EXPECT_EQ(document.undoName(), "");
    document.redo();
    document.redo();
    EXPECT_EQ(document.undoName(), "Scale to 2.000000");
    EXPECT_EQ(document.redoName(), "");
}

TEST_F(EditDocumentTest, SharesWhatAStepDoesNotChangeAndForgetsTheOldestBeyondItsMemory) {
    const auto recording = document.recording();
    const auto segments = document.edit().segments;
    constexpr int small = 1000; // next to nothing, so all of them are kept
    for (int step = 0; step < small; ++step)
        scaleCursor(10 + step);
    EXPECT_TRUE(document.recording()->isSameAs(*recording));
    EXPECT_TRUE(document.edit().segments.isSameAs(segments));
    std::vector<model::ClickEvent> clicks(100'000);
    const auto most = EditDocument::mostBytes / (clicks.size() * sizeof(model::ClickEvent));
    for (std::size_t step = 0; step < most + 3; ++step) {
        auto edit = document.edit();
        clicks.front().x = static_cast<double>(step + 1);
        edit.clickEvents = clicks;
        document.apply(edit, {"Move Zoom"});
    }
    std::size_t undone = 0;
    for (; document.canUndo(); ++undone)
        document.undo();
    EXPECT_GE(undone, most - 1);
    EXPECT_LE(undone, most);
    EXPECT_EQ(document.edit().clickEvents.size(), clicks.size()) << "the first cannot be undone";
}

TEST_F(EditDocumentTest, IsModifiedWhereItDiffersFromWhatIsSaved) {
    EXPECT_FALSE(document.isModified()) << "nobody has edited the recording yet";
    scaleCursor(1);
    EXPECT_TRUE(document.isModified());
    auto written = *document.project();
    written.recording = written.recording.movedTo("/p.vantro/recording.mov");
    scaleCursor(2); // while it is being written
    document.saved(written);
    EXPECT_TRUE(document.isModified());
    EXPECT_EQ(document.recording()->movie(), "/p.vantro/recording.mov");
    document.undo();
    EXPECT_FALSE(document.isModified());
    document.rename("holiday");
    EXPECT_TRUE(document.isModified());
    document.close({});
    EXPECT_FALSE(document.isModified() || document.canUndo() || document.canRedo());
    scaleCursor(1);
    EXPECT_FALSE(document.canUndo()) << "choices for the next recording are no steps";
}

} // namespace
} // namespace vantro::app::flows
