#pragma once

#include "base/FileDescriptor.h"
#include "base/OutputFile.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace vantro::exporting::gif {

/// Bytes on their way into a file that appears under its name only when it is whole.
///
/// Destruction without `commit` leaves nothing behind. Failures are std::filesystem_error with the
/// target's path and the system's reason. One thread.
class GifStream {
  public:
    explicit GifStream(const std::filesystem::path& target);

    const std::filesystem::path& target() const { return m_file.target(); }
    void write(std::span<const std::uint8_t> bytes);
    /// As OutputFile::commit.
    bool commit(const base::Finishing& finishing);

  private:
    base::OutputFile m_file;
    base::FileDescriptor m_descriptor;
};

} // namespace vantro::exporting::gif
