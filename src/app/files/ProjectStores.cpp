#include "app/files/ProjectStores.h"

#include "app/files/FolderStore.h"

namespace vantro::app::files {

const ProjectStore& storeOf(const std::filesystem::path&) {
    static const FolderStore folders; // the only form there is
    return folders;
}

model::Project readProjectFile(const std::filesystem::path& packagePath) {
    return storeOf(packagePath).read(packagePath);
}

model::Project saveProject(const std::filesystem::path& packagePath, const model::Project& project,
                           bool replace) {
    return storeOf(packagePath).save(packagePath, project, replace, {}).project;
}

std::string packageProblem(const std::filesystem::path& packagePath, bool replace) {
    return storeOf(packagePath).problem(packagePath, replace);
}

} // namespace vantro::app::files
