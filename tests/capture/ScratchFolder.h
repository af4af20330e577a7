#pragma once

#include "model/Uuid.h"

#include <filesystem>

namespace vantro::test {

/// A folder of a test's own, removed with everything in it.
class ScratchFolder {
  public:
    ScratchFolder()
        : m_path(std::filesystem::temp_directory_path() /
                 ("vantro-test-" + Uuid::random().toString())) {
        std::filesystem::create_directories(m_path);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }

  private:
    std::filesystem::path m_path;
};

} // namespace vantro::test
