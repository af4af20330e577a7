#include "base/OutputFile.h"

#include "base/FileDescriptor.h"

#include <cerrno>
#include <random>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

namespace vantro::base {
namespace {

[[noreturn]] void fail(const char* what, const std::filesystem::path& path) {
    throw std::filesystem::filesystem_error(what, path,
                                            std::error_code(errno, std::generic_category()));
}

// What a slow disk takes in some tenths of a second.
constexpr off_t syncedAtOnce = off_t{16} * 1024 * 1024;

/// In pieces, between which it can be given up: an hour's film takes a disk many seconds.
void sync(const std::filesystem::path& path, const std::filesystem::path& reported,
          const Finishing& finishing = {}) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    // A folder's length means nothing.
    const bool hasLength = file && std::filesystem::is_regular_file(path);
    const off_t size = hasLength ? ::lseek(file.get(), 0, SEEK_END) : 0;
    for (off_t done = 0; done < size && !finishing.cancelled.stop_requested();
         done += syncedAtOnce) {
        finishing.report(static_cast<double>(done) / static_cast<double>(size));
        // Only spreads the work of fsync, which tells what goes wrong.
        ::sync_file_range(file.get(), done, syncedAtOnce,
                          SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE |
                              SYNC_FILE_RANGE_WAIT_AFTER);
    }
    if (finishing.cancelled.stop_requested())
        return;
    if (!file || ::fsync(file.get()) != 0)
        fail("cannot write", reported);
}

/// So that the new name survives a power cut, too. File systems that cannot are left alone: the
/// file is in its place.
void syncFolder(const std::filesystem::path& folder) {
    const FileDescriptor descriptor(
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor)
        ::fsync(descriptor.get());
}

void writeAll(int fd, std::span<const char> bytes, const std::filesystem::path& reported) {
    while (!bytes.empty()) {
        const auto written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            fail("cannot write", reported);
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
}

} // namespace

Finishing Finishing::part(double from, double to) const {
    if (!progress)
        return *this;
    return {cancelled, [whole = progress, from, to](double fraction) {
                whole(from + (to - from) * fraction);
            }};
}

void Finishing::report(double fraction) const {
    if (progress)
        progress(fraction);
}

OutputFile::OutputFile(std::filesystem::path target) : m_target(std::move(target)) {
    constexpr int attempts = 100;
    std::random_device random;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        m_temporary = m_target.parent_path() /
                      fmt::format(".{}.{:08x}", m_target.filename().string(), random());
        const FileDescriptor file(
            ::open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (file)
            return;
        if (errno != EEXIST)
            break;
    }
    fail("cannot write", m_target);
}

OutputFile::~OutputFile() {
    if (!m_committed)
        ::unlink(m_temporary.c_str());
}

bool OutputFile::commit(const Finishing& finishing) {
    sync(m_temporary, m_target, finishing);
    finishing.report(1);
    if (finishing.cancelled.stop_requested())
        return false;
    if (::rename(m_temporary.c_str(), m_target.c_str()) != 0)
        fail("cannot write", m_target);
    m_committed = true;
    syncFolder(m_target.parent_path());
    return true;
}

void syncToDisk(const std::filesystem::path& file) {
    sync(file, file);
}

void writeWholeFile(const std::filesystem::path& target, std::span<const char> bytes) {
    OutputFile file(target);
    const FileDescriptor descriptor(
        ::open(file.temporaryPath().c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC));
    if (!descriptor)
        fail("cannot write", target);
    writeAll(descriptor.get(), bytes, target);
    file.commit();
}

} // namespace vantro::base
