#pragma once

#include "app/files/EditJournal.h"
#include "app/files/ImportMovie.h"
#include "app/files/ProjectLock.h"
#include "app/files/RecordingRecovery.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace vantro::app::flows {

/// Where recordings come from that are no projects yet. Called on the worker thread; throw
/// std::exception.
using Recoverer = std::function<model::Recording(const std::filesystem::path& movie)>;
struct RecordingSources {
    /// Makes a finished recording of what a run of the program left behind.
    Recoverer recover = files::recoverRecording;
    /// Makes a recording of a movie from elsewhere.
    std::function<model::Project(const std::filesystem::path& movie)> import = files::importMovie;
};

/// What was read to be put into the editor. A value.
struct OpenedProject {
    model::Project project;
    std::optional<std::filesystem::path> package = {};
    std::shared_ptr<const files::ProjectLock> lock = {}; ///< none where it can only be read
    std::string whyReadOnly = {};                        ///< empty: it can be saved
    std::string pictureProblem = {}; ///< what cannot be shown of the background, and why
};

// On the worker thread, locked before anything is read. Throw std::exception.

OpenedProject readPackage(const std::filesystem::path& package);
/// What the edit of a recording begins with beside its zooms.
struct NewEdit {
    model::Edit choices = {};
    std::optional<model::Look> look = {};
};
/// A recording that lies where recordings are made, as a project that has not been saved.
OpenedProject readRecording(const Recoverer& recover, const std::filesystem::path& movie,
                            const NewEdit& begin);
/// What `edit` was made of, as it is without that edit.
OpenedProject readEdited(const Recoverer& recover, const files::JournalledEdit& edit);

} // namespace vantro::app::flows
