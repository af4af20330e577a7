#pragma once

#include "app/flows/ScriptedServices.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace vantro::test {

/// A state with a recording in its editor, in a folder of its own.
class EditedState : public testing::Test {
  protected:
    EditedState() {
        model::RecordingMetadata metadata;
        metadata.endTime = 5;
        const auto movie = folder.write("source/recording.mov", "movie");
        state.show({"demo", model::Recording(movie, metadata), {}});
        QObject::connect(&state, &app::AppState::phaseChanged,
                         [this] { phases.push_back(state.phase()); });
    }

    TemporaryFolder folder;
    app::AppState state{1};
    ScriptedPanels panels;
    ManualTasks tasks;
    std::vector<app::AppPhase> phases;
};

} // namespace vantro::test
