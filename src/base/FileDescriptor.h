#pragma once

#include <utility>

#include <unistd.h>

namespace vantro::base {

/// Owns one file descriptor and closes it; -1 owns nothing.
class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int fd) : m_fd(fd) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            reset();
            m_fd = std::exchange(other.m_fd, -1);
        }
        return *this;
    }
    ~FileDescriptor() { reset(); }

    int get() const { return m_fd; }
    /// Hands it over.
    int release() { return std::exchange(m_fd, -1); }
    explicit operator bool() const { return m_fd >= 0; }
    void reset() {
        if (m_fd >= 0)
            ::close(std::exchange(m_fd, -1));
    }

  private:
    int m_fd = -1;
};

} // namespace vantro::base
