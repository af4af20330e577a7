#include "app/files/ProjectStores.h"

#include "app/files/ArchiveStore.h"
#include "app/files/FolderStore.h"

namespace vantro::app::files {

const ProjectStore& storeFor(ProjectForm form) {
    static const FolderStore folders;
    static const ArchiveStore archives;
    if (form == ProjectForm::oneFile)
        return archives;
    return folders;
}

const ProjectStore& storeOf(const std::filesystem::path& project, ProjectForm form) {
    std::error_code none;
    const auto status = std::filesystem::status(project, none);
    const bool isThere = std::filesystem::exists(status);
    if (isThere)
        form =
            std::filesystem::is_regular_file(status) ? ProjectForm::oneFile : ProjectForm::folder;
    return storeFor(form);
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
