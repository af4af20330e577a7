#pragma once

#include <csignal>

#include <sys/resource.h>

namespace vantro::test {

/// Limits how large files of this process may grow, as a quota does.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        m_handler = std::signal(SIGXFSZ, SIG_IGN); // makes the write fail instead
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit m_before{};
    void (*m_handler)(int) = nullptr;
};

} // namespace vantro::test
