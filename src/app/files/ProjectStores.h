#pragma once

#include "app/files/ProjectStore.h"

namespace vantro::app::files {

/// What a project is on disk: a folder to work with, or one file to pass on.
enum class ProjectForm { folder, oneFile };

const ProjectStore& storeFor(ProjectForm form);
/// The form of what lies there, else `form`. Any thread.
const ProjectStore& storeOf(const std::filesystem::path& project,
                            ProjectForm form = ProjectForm::folder);

// What commands need of a store.

model::Project readProjectFile(const std::filesystem::path& packagePath);
/// Returns the project as it lies there.
model::Project saveProject(const std::filesystem::path& packagePath, const model::Project& project,
                           bool replace);
std::string packageProblem(const std::filesystem::path& packagePath, bool replace);

} // namespace vantro::app::files
