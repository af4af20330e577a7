#include "app/flows/ScriptedServices.h"
#include "app/state/AppState.h"

#include <gtest/gtest.h>

namespace vantro::app::flows {
namespace {

model::Project projectAt(const std::filesystem::path& movie) {
    return {"demo", model::Recording(movie, model::RecordingMetadata{}), {}};
}

TEST(AppState, TellsOfAChangeOnceAndOfAnEqualWriteNotAtAll) {
    AppState state(7);
    int changes = 0;
    int errors = 0;
    QObject::connect(&state, &AppState::cursorScaleChanged, [&] { ++changes; });
    QObject::connect(&state, &AppState::errorChanged, [&] { ++errors; });
    QObject::connect(&state, &AppState::showErrorChanged, [&] { ++errors; });
    for (int i = 0; i < 2; ++i) {
        state.setCursorScale(1);
        state.setError("no encoder", model::VantroError::Kind::exportFailed);
    }
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(errors, 2) << "the error and the alert";
    state.setError("no encoder", model::VantroError::Kind::projectSaveFailed);
    EXPECT_EQ(errors, 3) << "the alert is up already";
    state.document().open(projectAt("/r/recording.mov"));
    state.setCursorScale(2);
    state.document().undo();
    EXPECT_EQ(changes, 4) << "opened, set and brought back";
}

TEST(AppState, ShowsAProjectAndResetsWhatBelongsToIt) {
    AppState state(1);
    state.setCaptureMode(model::CaptureMode::window);
    QObject::connect(&state, &AppState::recordingPathChanged, [&state] {
        EXPECT_EQ(state.projectPath().has_value(), state.document().recording().has_value())
            << "nothing half-written is seen";
    });
    auto project = projectAt("/p.vantro/recording.mov");
    project.edit.clickEvents = {{model::ClickEvent{}}};
    project.edit.segments = {{model::TimelineSegment{}, model::TimelineSegment{}}};
    project.edit.background.padding = 0.2;
    project.edit.cursorScale = 1;
    project.edit.webcamHidden = project.edit.webcamMirrored = true;
    project.edit.systemAudioVolume = project.edit.microphoneVolume = 0.5;
    state.show(project, "/p.vantro");
    EXPECT_EQ(state.document().project(), project);
    EXPECT_EQ(state.phase(), AppPhase::previewing());

    state.setSelectedWindow(test::windowOf(3, "t"));
    state.reset();
    EXPECT_FALSE(state.selectedWindow());
    EXPECT_EQ(state.segments().size(), 1U);
    model::Edit expected;
    expected.segments = state.segments();
    expected.cursorScale = 2;
    expected.background.padding = 0.2;
    EXPECT_EQ(state.document().edit(), expected);
    EXPECT_EQ(state.captureMode(), model::CaptureMode::window);
    EXPECT_FALSE(state.document().canUndo());
}

/// A document with a recording whose changes are counted.
class EditDocumentTest : public testing::Test {
  protected:
    EditDocumentTest() {
        document.open(projectAt("/r/recording.mov"));
        QObject::connect(&document, &EditDocument::changed, [this] { ++changes; });
    }
    void scaleCursor(double scale, std::string_view key = {}) {
        auto edit = document.edit();
        edit.cursorScale = scale;
        document.apply(edit, key);
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

TEST_F(EditDocumentTest, SharesWhatAStepDoesNotChangeAndForgetsTheOldest) {
    const auto recording = document.recording();
    const auto segments = document.edit().segments;
    for (std::size_t step = 0; step <= EditDocument::mostSteps; ++step)
        scaleCursor(10 + static_cast<double>(step));
    EXPECT_TRUE(document.recording()->isSameAs(*recording));
    EXPECT_TRUE(document.edit().segments.isSameAs(segments));
    std::size_t undone = 0;
    for (; document.canUndo(); ++undone)
        document.undo();
    EXPECT_EQ(undone, EditDocument::mostSteps);
    EXPECT_EQ(document.edit().cursorScale, 10) << "the first step cannot be undone";
    EXPECT_TRUE(document.edit().segments.isSameAs(segments));
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
