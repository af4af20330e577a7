#include "app/files/FileLinking.h"

#include "archive/ArchivePath.h"
#include "archive/ArchiveWriter.h"
#include "base/FileDescriptor.h"
#include "base/OutputFile.h"
#include "model/Uuid.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vantro::app::files {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const char* what, const fs::path& from, const fs::path& to) {
    throw fs::filesystem_error(what, from, to, std::error_code(errno, std::generic_category()));
}

/// Copies the bytes inside the kernel, sharing the blocks where the file system can.
void copyBytes(const fs::path& source, const fs::path& temporary, const fs::path& target) {
    const base::FileDescriptor from(::open(source.c_str(), O_RDONLY | O_CLOEXEC));
    const base::FileDescriptor to(::open(temporary.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC));
    if (!from || !to)
        fail("cannot copy", source, target);
    if (::ioctl(to.get(), FICLONE, from.get()) == 0)
        return;
    fs::copy_file(source, temporary, fs::copy_options::overwrite_existing);
}

} // namespace

void linkOrCopy(const fs::path& source, const fs::path& target) {
    std::error_code ignored;
    if (fs::equivalent(source, target, ignored))
        return;
    const auto linked = target.parent_path() / ("." + model::Uuid::random().toString());
    // A link to a symbolic link would dangle once that is moved.
    if (::linkat(AT_FDCWD, source.c_str(), AT_FDCWD, linked.c_str(), AT_SYMLINK_FOLLOW) == 0) {
        if (::rename(linked.c_str(), target.c_str()) == 0)
            return;
        const int reason = errno;
        ::unlink(linked.c_str());
        errno = reason;
        fail("cannot link", source, target);
    }
    const bool linkingUnsupported = errno == ENOTDIR || errno == EXDEV || errno == EPERM ||
                                    errno == ENOTSUP || errno == EMLINK || errno == ENOSYS;
    if (!linkingUnsupported)
        fail("cannot link", source, target);
    const auto bytes = archive::locate(source);
    base::OutputFile copy(target);
    if (bytes.isWholeFile())
        copyBytes(source, copy.temporaryPath(), target);
    else
        archive::copyOut(bytes, copy.temporaryPath());
    copy.commit();
}

} // namespace vantro::app::files
