// Recordings that nobody saved.
#include "app/flows/RecoveryFlow.h"
#include "app/flows/UnsavedEditFixture.h"
#include "base/Journal.h"
#include "media/MovieRecovery.h"

namespace vantro::app::flows {
namespace {

/// Recordings that a run of the program left where recordings are made.
class RecoveryFlowTest : public UnsavedEdit {
  protected:
    RecoveryFlowTest() {
        state.reset();
        movie = files::makeRecordingDirectory() / "recording.mov";
        std::ofstream(movie) << "movie";
    }
    void find() {
        flow.find();
        tasks.runAll();
    }

    fs::path movie;
    RecoveryFlow flow{state, projects, tasks};
};

TEST_F(RecoveryFlowTest, WhatWasInterruptedIsOfferedOnceAndStaysListed) {
    find();
    EXPECT_FALSE(flow.isOffered()) << "it is whole";
    base::JournalWriter(media::movieJournalPath(movie)).append("left behind");
    find();
    EXPECT_TRUE(flow.isOffered());
    flow.dismiss();
    find();
    EXPECT_FALSE(flow.isOffered());
    EXPECT_EQ(flow.recordings().size(), 1U);
    flow.offer(movie);
    flow.recover();
    state.setPhase(AppPhase::recording()); // begins meanwhile
    tasks.runAll();
    EXPECT_FALSE(state.recordingPath());
    state.setPhase(AppPhase::idle());
    tasks.runAll();
    ASSERT_EQ(flow.recordings().size(), 1U);
    flow.open(movie);
    tasks.runAll();
    EXPECT_EQ(state.recordingPath(), movie);
    EXPECT_EQ(state.phase(), AppPhase::previewing());
}

} // namespace
} // namespace vantro::app::flows
