#pragma once

#include "base/FileDescriptor.h"

#include <expected>
#include <filesystem>
#include <memory>
#include <string>

namespace vantro::app::files {

/// The right to change a project or a recording on disk, held against other programs that ask for
/// it, of whatever account. Reading needs none. The system releases it when its program ends, in
/// whatever way; it leaves nothing on disk. It stays with what it was taken for when that is moved.
/// Any thread.
class ProjectLock {
  public:
    /// Or why not, in a few words. Where the file system knows no locks it protects from nothing.
    static std::expected<std::shared_ptr<const ProjectLock>, std::string>
    take(const std::filesystem::path& fileOrFolder);

    /// Whether this is what lies at `path` now.
    bool isOf(const std::filesystem::path& path) const;

    explicit ProjectLock(base::FileDescriptor held) : m_held(std::move(held)) {}

  private:
    base::FileDescriptor m_held;
};

} // namespace vantro::app::files
