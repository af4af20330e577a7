#pragma once

#include "app/files/ProjectStore.h"

namespace vantro::app::files {

/// Projects as single files named NAME.vantro: zip files whose first entry, "mimetype", tells
/// desktops what they are. They hold what a project's folder holds, stored as it is, so that movies
/// are played in place.
///
/// Saved onto itself, an edit is appended and counts once its last byte is there; when such edits
/// have come to outweigh the project the file is written anew.
class ArchiveStore : public ProjectStore {
  public:
    ProjectAccess access(const std::filesystem::path& project) const override;
    model::Project read(const std::filesystem::path& project) const override;
    SavedProject save(const std::filesystem::path& target, const model::Project& project,
                      bool replace, const std::shared_ptr<const ProjectLock>& held) const override;
    std::string problem(const std::filesystem::path& target, bool replace) const override;
    std::filesystem::path movie(const std::filesystem::path& project) const override;
};

} // namespace vantro::app::files
