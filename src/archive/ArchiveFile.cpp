#include "archive/ArchiveFile.h"

#include "archive/ArchiveError.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace vantro::archive {

void fail(const std::filesystem::path& file, std::string_view why) {
    throw ArchiveError(fmt::format("{}: {}", file.string(), why));
}

void failWithErrno(const std::filesystem::path& file) {
    fail(file, std::generic_category().message(errno));
}

base::FileDescriptor openFile(const std::filesystem::path& file, int flags) {
    base::FileDescriptor opened(::open(file.c_str(), flags | O_CLOEXEC));
    if (!opened)
        failWithErrno(file);
    return opened;
}

std::uint64_t sizeOf(int fd, const std::filesystem::path& file) {
    struct stat status{};
    if (::fstat(fd, &status) != 0)
        failWithErrno(file);
    return static_cast<std::uint64_t>(status.st_size);
}

std::size_t readAt(int fd, std::uint64_t place, std::span<char> bytes,
                   const std::filesystem::path& file) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const auto got =
            ::pread(fd, bytes.data() + done, bytes.size() - done, static_cast<off_t>(place + done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            failWithErrno(file);
        if (got == 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

void writeAt(int fd, std::uint64_t place, std::string_view bytes,
             const std::filesystem::path& file) {
    while (!bytes.empty()) {
        const auto written = ::pwrite(fd, bytes.data(), bytes.size(), static_cast<off_t>(place));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            failWithErrno(file);
        bytes.remove_prefix(static_cast<std::size_t>(written));
        place += static_cast<std::uint64_t>(written);
    }
}

std::uint32_t checksum(std::string_view bytes, std::uint32_t before) {
    return static_cast<std::uint32_t>(
        ::crc32_z(before, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

} // namespace vantro::archive
