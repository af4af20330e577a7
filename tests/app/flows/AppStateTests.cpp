#include "app/state/AppState.h"

#include <gtest/gtest.h>

namespace vantro::app::flows {
namespace {

model::Project projectAt(const std::filesystem::path& movie) {
    return {"demo", model::Recording(movie, model::RecordingMetadata{}), {}};
}

/// Every field of the edit at another value than a fresh one has.
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

TEST(AppState, KeepsTheBackgroundAndNothingElseOfAnEditThatIsLeft) {
    AppState state(1);
    auto project = projectAt("/p.vantro/recording.mov");
    project.edit = otherEdit();
    state.show(project, "/p.vantro");
    EXPECT_EQ(state.document().project(), project);
    state.reset();
    model::Edit expected;
    expected.segments = state.segments();
    expected.cursorScale = 2;
    expected.background.padding = 0.2;
    EXPECT_EQ(state.document().edit(), expected);
    EXPECT_EQ(state.segments().size(), 1U);
    EXPECT_FALSE(state.document().canUndo() || state.projectPath());
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
