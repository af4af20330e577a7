#include "archive/ArchivePath.h"

#include "archive/ArchiveError.h"
#include "archive/ArchiveFile.h"
#include "archive/StoredArchive.h"

#include <fcntl.h>
#include <fmt/format.h>

namespace vantro::archive {
namespace {

namespace fs = std::filesystem;

/// The file that a path leads through, if there is one.
std::optional<fs::path> archiveOn(const fs::path& path) {
    std::error_code none;
    for (auto above = path.parent_path(); above.has_relative_path(); above = above.parent_path()) {
        const auto status = fs::status(above, none);
        if (fs::exists(status))
            return fs::is_regular_file(status) ? std::optional(above) : std::nullopt;
    }
    return {};
}

} // namespace

FilePart locate(const fs::path& path) {
    std::error_code error;
    if (const auto status = fs::status(path, error); fs::exists(status)) {
        const auto size = fs::is_regular_file(status) ? fs::file_size(path, error) : 0;
        return {.file = path, .offset = 0, .size = error ? 0 : size, .checksum = {}};
    }
    const auto reason = error ? error : std::make_error_code(std::errc::no_such_file_or_directory);
    const auto file = archiveOn(path);
    if (!file)
        fail(path, reason.message());
    const auto archive = StoredArchive::open(*file);
    const auto name = path.lexically_relative(*file).string();
    const auto* entry = archive.find(name);
    if (entry == nullptr)
        fail(*file, fmt::format("it holds no {}", name));
    return archive.part(*entry);
}

std::optional<FilePart> find(const fs::path& path) try {
    return locate(path);
} catch (const ArchiveError&) {
    return {};
}

} // namespace vantro::archive
