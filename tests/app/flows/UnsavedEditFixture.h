#pragma once

#include "app/files/ProjectStores.h"
#include "app/files/RecordingFolder.h"
#include "app/flows/EditedState.h"
#include "app/flows/JournalFlow.h"
#include "app/flows/ProjectFlow.h"
#include "support/Environment.h"

#include <cstdlib>
#include <optional>

namespace vantro::app::flows {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Kind = model::VantroError::Kind;

/// A run of the program over files that a run before it may have left.
class UnsavedEdit : public test::EditedState {
  protected:
    UnsavedEdit() { variables.set("TMPDIR", folder.path()); }

    test::Environment variables;
    const fs::path directory = folder / "edits";
    const fs::path package = folder / "demo.vantro";
    RecordingSources sources{.recover =
                                 [](const fs::path& movie) {
                                     model::RecordingMetadata metadata;
                                     metadata.endTime = 5;
                                     return model::Recording(movie, metadata);
                                 },
                             .import = [](const fs::path&) -> model::Project {
                                 throw model::VantroError(Kind::projectOpenFailed, "no movie");
                             }};
    test::ManualTimers timers;
    ProjectFlow projects{state, panels, tasks, sources};
    std::unique_ptr<JournalFlow> journals =
        std::make_unique<JournalFlow>(state, projects, timers, tasks, directory);

    void save() {
        projects.saveProject();
        if (panels.kind)
            panels.answer(package);
        tasks.runAll();
    }
    void edit(double cursorScale) { state.setCursorScale(cursorScale); }
    std::size_t journalsOnDisk() const {
        std::error_code none;
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(directory, none), fs::directory_iterator()));
    }
    /// What a program that ended this way finds when it is started again.
    void startAgain() {
        journals.reset();
        tasks.runAll();
        state.reset();
        journals = std::make_unique<JournalFlow>(state, projects, timers, tasks, directory);
        journals->find();
        tasks.runAll();
    }
};

} // namespace vantro::app::flows
