#include "base/UserFolders.h"

#include <cstdlib>

namespace vantro::base {

std::optional<std::filesystem::path> folderFrom(const char* variable) {
    const char* value = std::getenv(variable); // NOLINT(concurrency-mt-unsafe): never set here
    if (value == nullptr || *value != '/')
        return {};
    return value;
}

std::optional<std::filesystem::path> userFolder(const char* variable, const char* belowHome) {
    if (auto folder = folderFrom(variable))
        return folder;
    if (const auto home = folderFrom("HOME"))
        return *home / belowHome;
    return {};
}

} // namespace vantro::base
