#pragma once

#include "app/files/ProjectLock.h"
#include "model/Project.h"

#include <filesystem>
#include <memory>
#include <string>

namespace vantro::app::files {

/// Whether a project may be changed where it lies.
struct ProjectAccess {
    std::shared_ptr<const ProjectLock> lock; ///< null when it may only be read
    std::string whyReadOnly;                 ///< a few words; empty when it may be changed
};

struct SavedProject {
    model::Project project; ///< as it lies there
    std::shared_ptr<const ProjectLock> lock;
};

/// A form that projects have on disk. Stateless; any thread; everything blocks.
class ProjectStore {
  public:
    virtual ~ProjectStore() = default;

    virtual ProjectAccess access(const std::filesystem::path& project) const = 0;
    /// Throws VantroError projectOpenFailed, which says what is wrong and where.
    virtual model::Project read(const std::filesystem::path& project) const = 0;
    /// The project at `target` appears or changes whole or not at all, even if the program is
    /// killed. One that is there is replaced if `replace`, and only with its lock: `held`, or
    /// one that nobody else has. Throws VantroError projectSaveFailed.
    virtual SavedProject save(const std::filesystem::path& target, const model::Project& project,
                              bool replace,
                              const std::shared_ptr<const ProjectLock>& held) const = 0;
    /// Why nothing can be saved there, before any work is done; empty when it can.
    virtual std::string problem(const std::filesystem::path& target, bool replace) const = 0;
    /// Where the movie of a project of that name lies once it is saved.
    virtual std::filesystem::path movie(const std::filesystem::path& project) const = 0;
};

} // namespace vantro::app::files
