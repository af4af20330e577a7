#pragma once

#include "app/files/ProjectStore.h"

namespace vantro::app::files {

/// Projects as folders named NAME.vantro that hold "project.json", "recording.mov", "webcam.mov"
/// where there is one, and the copy of a custom background picture.
///
/// Movies are linked, or copied to another file system; a folder that holds the project's own
/// movies already gets a new "project.json" only. What lies in a folder beside a project's files
/// stays; one that holds no project is left alone.
class FolderStore : public ProjectStore {
  public:
    ProjectAccess access(const std::filesystem::path& project) const override;
    model::Project read(const std::filesystem::path& project) const override;
    SavedProject save(const std::filesystem::path& target, const model::Project& project,
                      bool replace, const std::shared_ptr<const ProjectLock>& held) const override;
    std::string problem(const std::filesystem::path& target, bool replace) const override;
    std::filesystem::path movie(const std::filesystem::path& project) const override;
};

} // namespace vantro::app::files
