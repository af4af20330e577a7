#pragma once

#include "app/files/ProjectStores.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace vantro::app::flows {

enum class PanelKind {
    saveMovie,
    saveGif,
    saveFrame,
    saveProject,
    openProject,
    importMovie,
    openPicture
};

struct ChosenFile {
    std::filesystem::path path;
    files::ProjectForm form = files::ProjectForm::folder; ///< of a project that is to be saved
};

/// Asks the user for files. Main thread.
class FilePanels {
  public:
    using Answer = std::function<void(std::optional<ChosenFile>)>;

    virtual ~FilePanels() = default;

    /// Shows one panel and calls `answer` later with what was chosen, or with nothing when the
    /// panel was cancelled. A name that is proposed carries its extension; a chosen one has it too.
    virtual void ask(PanelKind kind, const std::string& proposedName, Answer answer) = 0;
};

} // namespace vantro::app::flows
