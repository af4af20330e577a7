#include "app/files/ProjectLock.h"

#include "base/Log.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace vantro::app::files {

std::expected<std::shared_ptr<const ProjectLock>, std::string>
ProjectLock::take(const std::filesystem::path& fileOrFolder) {
    base::FileDescriptor held(::open(fileOrFolder.c_str(), O_RDONLY | O_CLOEXEC));
    if (!held)
        return std::unexpected(std::generic_category().message(errno));
    if (::flock(held.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK)
            return std::unexpected("it is open in another Vantro");
        base::logWarning("{} cannot be locked: {}", fileOrFolder.string(),
                         std::generic_category().message(errno));
    }
    return std::make_shared<const ProjectLock>(std::move(held));
}

bool ProjectLock::isOf(const std::filesystem::path& path) const {
    struct stat mine{};
    struct stat there{};
    return ::fstat(m_held.get(), &mine) == 0 && ::stat(path.c_str(), &there) == 0 &&
           mine.st_dev == there.st_dev && mine.st_ino == there.st_ino;
}

} // namespace vantro::app::files
