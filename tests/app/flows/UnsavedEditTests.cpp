// Edits that are not saved: asked about, and kept over a crash.
#include "app/flows/UnsavedEditFixture.h"

namespace vantro::app::flows {
namespace {

TEST_F(UnsavedEdit, IsAskedAboutWhereverItWouldBeLost) {
    save();
    const auto other = folder / "other.vantro";
    files::saveProject(other, files::readProjectFile(package), false);
    struct Way {
        const char* name;
        std::function<void()> leave;
        std::function<bool()> hasLeft;
        std::function<void()> answer;
        double saved; ///< the pointer's scale, in the package
    };
    bool closed = false;
    const auto discard = [&] { projects.discardAndLeave(); };
    for (const auto& [name, leave, hasLeft, answer, saved] :
         {Way{"close", [&] { projects.leave([&] { closed = true; }); }, [&] { return closed; },
              discard, 3},
          Way{"new recording", [&] { projects.newRecording(); },
              [&] { return state.phase() == AppPhase::idle(); }, discard, 3},
          Way{"open", [&] { projects.open(other); }, [&] { return state.projectPath() == other; },
              [&] { projects.saveAndLeave(); }, 1.5}}) {
        SCOPED_TRACE(name);
        projects.open(package);
        if (projects.isLeaveAsked())
            projects.discardAndLeave();
        tasks.runAll();
        edit(1.5);
        leave();
        tasks.runAll();
        EXPECT_TRUE(projects.isLeaveAsked());
        projects.stay();
        tasks.runAll();
        EXPECT_FALSE(projects.isLeaveAsked() || hasLeft());
        EXPECT_EQ(state.cursorScale(), 1.5);

        leave();
        answer();
        tasks.runAll();
        EXPECT_TRUE(hasLeft());
        EXPECT_EQ(files::readProjectFile(package).edit.cursorScale, saved);
    }
    closed = false;
    projects.leave([&] { closed = true; });
    EXPECT_TRUE(closed) << "all is saved";
}

TEST_F(UnsavedEdit, StaysWhereItCannotBeSavedOrNoPlaceIsChosen) {
    bool left = false;
    const auto leave = [&] { projects.leave([&] { left = true; }); };
    edit(1.5);
    leave();
    projects.saveAndLeave();
    panels.answer({});
    tasks.runAll();
    leave();
    projects.saveAndLeave();
    panels.answer(folder / "missing/demo.vantro");
    tasks.runAll();
    test::expectError(state, Kind::projectSaveFailed, "no such folder");
    leave();
    projects.saveAndLeave();
    panels.answer(package);
    edit(1.25); // while it is being written
    tasks.runAll();
    EXPECT_FALSE(left);
    EXPECT_FALSE(projects.isLeaveAsked());
    EXPECT_TRUE(state.document().isModified());
}

TEST_F(UnsavedEdit, IsJournalledWithinASecondOfEachChangeAndNotWhenNothingChanges) {
    timers.advance(10s);
    EXPECT_EQ(tasks.waitingWork() + timers.running(), 0U);
    edit(1.5);
    timers.advance(999ms);
    EXPECT_EQ(tasks.waitingWork(), 0U);
    edit(1.6);
    timers.advance(1ms);
    EXPECT_EQ(tasks.waitingWork(), 1U);
    edit(1.7);
    timers.advance(5s);
    EXPECT_EQ(tasks.waitingWork(), 1U) << "one at a time";
    tasks.runAll();
    timers.advance(1s);
    tasks.runAll();
    timers.advance(2s);
    EXPECT_EQ(tasks.waitingWork() + timers.running(), 0U);
    EXPECT_EQ(journalsOnDisk(), 1U);

    save();
    EXPECT_EQ(journalsOnDisk(), 0U);
}

TEST_F(UnsavedEdit, ComesBackAfterACrashOnTopOfWhatWasSaved) {
    for (const bool isSaved : {false, true}) {
        SCOPED_TRACE(isSaved);
        if (isSaved)
            save();
        edit(1.5);
        state.setRecordingName("Renamed");
        timers.advance(1s);
        tasks.runAll();
        edit(1.75); // at its end a program has time for this
        const auto movie = state.recordingPath();
        startAgain();
        ASSERT_TRUE(journals->isOffered());
        EXPECT_EQ(journals->offeredName(), "Renamed");
        journals->restore();
        tasks.runAll();
        EXPECT_EQ(state.recordingPath(), movie);
        EXPECT_EQ(state.projectPath(), isSaved ? std::optional(package) : std::nullopt);
        EXPECT_EQ(state.cursorScale(), 1.75);
        EXPECT_EQ(state.recordingName(), "Renamed");
        EXPECT_TRUE(state.document().isModified());
        EXPECT_EQ(journalsOnDisk(), 1U) << "until it is saved";
        state.document().undo();
        EXPECT_EQ(state.cursorScale(), 3);
        state.document().redo();
        save();
        EXPECT_EQ(journalsOnDisk(), 0U);
        edit(3);
        save();
    }
    edit(1.5);
    startAgain();
    journals->discardOffered();
    tasks.runAll();
    EXPECT_FALSE(journals->isOffered());
    EXPECT_EQ(journalsOnDisk(), 0U);
    EXPECT_EQ(files::readProjectFile(package).edit.cursorScale, 3);
}

TEST_F(UnsavedEdit, IsNeverPutOnAnotherRecordingNorLostWhenItsProjectIsGone) {
    save();
    edit(1.5);
    startAgain();
    model::RecordingMetadata metadata;
    metadata.endTime = 7;
    folder.write("another/recording.mov", "another");
    fs::rename(package, folder / "moved.vantro");
    journals->restore();
    tasks.runAll();
    test::expectError(state, Kind::projectOpenFailed, "no such project");
    files::saveProject(package, {"x", {folder / "another/recording.mov", metadata}, {}}, false);
    startAgain();
    journals->restore();
    tasks.runAll();
    test::expectError(state, Kind::projectOpenFailed, "holds another recording");
    EXPECT_FALSE(state.recordingPath());
    startAgain();
    EXPECT_TRUE(journals->isOffered()) << "again";
}

TEST_F(UnsavedEdit, SaysOnceWhenItCannotBeKeptAndWhenItCannotBeDiscarded) {
    folder.write("edits", "in the way");
    edit(1.5);
    timers.advance(1s);
    tasks.runAll();
    test::expectError(state, Kind::projectSaveFailed, "would be lost in a crash");
    state.setShowError(false);
    timers.advance(3s);
    tasks.runAll();
    EXPECT_FALSE(state.showError());

    fs::remove(directory);
    timers.advance(1s);
    tasks.runAll();
    ASSERT_EQ(journalsOnDisk(), 1U) << "it is tried again";
    fs::rename(directory, folder / "aside");
    folder.write("edits", "in the way");
    bool left = false;
    journals->discard([&] { left = true; });
    tasks.runAll();
    EXPECT_FALSE(left);
    test::expectError(state, Kind::projectSaveFailed, "the discarded changes are still there");
    journals->discard([&] { left = true; });
    tasks.runAll();
    EXPECT_TRUE(left) << "the second time";
}

TEST_F(UnsavedEdit, ThatCannotBeReadAgainIsToldOnceAndStaysOnDisk) {
    edit(1.5);
    startAgain();
    journals->dismiss();
    const auto journal = fs::directory_iterator(directory)->path();
    std::ofstream(journal / "edit") << "damaged";
    for (const bool isFirst : {true, false}) {
        startAgain();
        EXPECT_FALSE(journals->isOffered());
        EXPECT_EQ(state.showError(), isFirst);
        if (isFirst)
            test::expectError(state, Kind::projectOpenFailed, journal.string());
        state.setShowError(false);
    }
    EXPECT_EQ(test::contentOf(journal / "edit-unreadable"), "damaged");
}

TEST_F(UnsavedEdit, OfAProjectThatIsOpenElsewhereIsSavedToAnotherPlace) {
    save();
    state.reset();
    auto elsewhere = files::storeOf(package).access(package);
    projects.open(package);
    tasks.runAll();
    EXPECT_EQ(state.projectPath(), package);
    EXPECT_EQ(projects.readOnlyNotice(), "it is open in another Vantro");
    projects.dismissReadOnlyNotice();
    edit(1.5);
    projects.saveProject();
    ASSERT_EQ(panels.kind, PanelKind::saveProject);
    panels.answer(package);
    tasks.runAll();
    test::expectError(state, Kind::projectSaveFailed, "open in another Vantro");
    projects.saveProject();
    panels.answer(folder / "copy.vantro");
    tasks.runAll();
    EXPECT_FALSE(projects.isReadOnly());
    EXPECT_EQ(files::readProjectFile(package).edit.cursorScale, 3);
    EXPECT_EQ(files::readProjectFile(folder / "copy.vantro").edit.cursorScale, 1.5);

    elsewhere = {};
    projects.open(package);
    tasks.runAll();
    EXPECT_FALSE(projects.isReadOnly());
    EXPECT_FALSE(files::storeOf(package).access(package).lock) << "it is ours now";
}

TEST_F(UnsavedEdit, OfAProjectIsNotOpenedOverARunningRecording) {
    save();
    state.reset();
    projects.open(package);
    state.setPhase(AppPhase::recording()); // begins while the project is being read
    tasks.runAll();
    EXPECT_EQ(state.phase(), AppPhase::recording());
    EXPECT_FALSE(state.metadata());
    projects.openProject();
    EXPECT_FALSE(panels.kind);
}

} // namespace
} // namespace vantro::app::flows
