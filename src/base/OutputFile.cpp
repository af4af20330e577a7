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

void sync(const std::filesystem::path& path, const std::filesystem::path& reported) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
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

void OutputFile::commit() {
    sync(m_temporary, m_target);
    if (::rename(m_temporary.c_str(), m_target.c_str()) != 0)
        fail("cannot write", m_target);
    m_committed = true;
    syncFolder(m_target.parent_path());
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
