#include "app/files/ProjectPackage.h"

#include "model/Json.h"
#include "model/VantroError.h"

#include <cerrno>
#include <fstream>
#include <sstream>
#include <system_error>

#include <fmt/format.h>

namespace vantro::app::files {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void failOpen(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::projectOpenFailed, message);
}

std::string readWholeFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        failOpen(fmt::format("{}: {}", path.string(), std::generic_category().message(errno)));
    std::ostringstream content;
    content << file.rdbuf();
    if (file.bad())
        failOpen(fmt::format("{}: cannot be read", path.string()));
    return std::move(content).str();
}

void requirePackageFolder(const fs::path& packagePath) {
    std::error_code error;
    const auto status = fs::status(packagePath, error);
    if (!fs::exists(status))
        failOpen(fmt::format("{}: no such project", packagePath.string()));
    if (!fs::is_directory(status))
        failOpen(fmt::format("{}: not a project folder", packagePath.string()));
}

} // namespace

model::Project readProjectFile(const fs::path& packagePath) {
    requirePackageFolder(packagePath);
    const auto path = packagePath / package::projectFile;
    try {
        return model::decodeProject(readWholeFile(path), packagePath / package::recordingFile);
    } catch (const model::DecodingError& error) {
        failOpen(fmt::format("{}: {}", path.string(), error.what()));
    }
}

} // namespace vantro::app::files
