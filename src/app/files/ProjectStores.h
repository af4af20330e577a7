#pragma once

#include "app/files/ProjectStore.h"

namespace vantro::app::files {

/// The form of what lies, or is to lie, there. Any thread.
const ProjectStore& storeOf(const std::filesystem::path& project);

// What commands need of a store.

model::Project readProjectFile(const std::filesystem::path& packagePath);
/// Returns the project as it lies there.
model::Project saveProject(const std::filesystem::path& packagePath, const model::Project& project,
                           bool replace);
std::string packageProblem(const std::filesystem::path& packagePath, bool replace);

} // namespace vantro::app::files
