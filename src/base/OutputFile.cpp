#include "base/OutputFile.h"

#include "base/FileDescriptor.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>

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
    auto pattern =
        (m_target.parent_path() / ("." + m_target.filename().string() + ".XXXXXX")).string();
    const FileDescriptor file(::mkostemp(pattern.data(), O_CLOEXEC));
    if (!file)
        fail("cannot write", m_target);
    m_temporary = pattern;
    const auto mask = ::umask(0); // mkostemp makes a private file; an export is an ordinary one
    ::umask(mask);
    ::fchmod(file.get(), 0666 & ~mask);
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
