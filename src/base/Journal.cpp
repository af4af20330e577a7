#include "base/Journal.h"

#include <cerrno>
#include <fstream>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>

namespace vantro::base {
namespace {

[[noreturn]] void fail(const char* what, const std::filesystem::path& path) {
    throw std::filesystem::filesystem_error(what, path,
                                            std::error_code(errno, std::generic_category()));
}

} // namespace

JournalWriter::JournalWriter(const std::filesystem::path& path)
    : m_file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0666)) {
    if (!m_file)
        fail("cannot write", path);
    ::flock(m_file.get(), LOCK_EX | LOCK_NB); // some network file systems know no locks
}

bool JournalWriter::append(std::string_view line) {
    if (!m_file)
        return false;
    m_buffer.assign(line);
    m_buffer += '\n';
    for (std::string_view rest = m_buffer; !rest.empty();) {
        const auto written = ::write(m_file.get(), rest.data(), rest.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            m_file.reset();
            return false;
        }
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool isJournalBeingWritten(const std::filesystem::path& path) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    return file && ::flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

std::vector<std::string> readJournal(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        fail("cannot read", path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        if (file.eof())
            break; // torn: its line break is missing
        lines.push_back(std::move(line));
    }
    if (file.bad())
        fail("cannot read", path);
    return lines;
}

} // namespace vantro::base
