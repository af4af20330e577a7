#pragma once

#include "archive/FilePart.h"
#include "archive/ZipRecords.h"
#include "base/FileDescriptor.h"

#include <span>
#include <string>

namespace vantro::archive {

/// Adds entries at the end of an archive, or to an empty file. What is there is not touched:
/// until `finish` has written the new directory's last bytes the earlier one counts, and without
/// `finish` the file gets its earlier length back. Errors are ArchiveErrors. Any one thread; the
/// file is this writer's alone.
class ArchiveWriter {
  public:
    /// Into a file that is there and empty.
    explicit ArchiveWriter(const std::filesystem::path& file);
    /// Behind what `earlier` holds.
    ArchiveWriter(const std::filesystem::path& file, std::span<const Entry> earlier,
                  std::uint64_t end);
    ~ArchiveWriter();
    ArchiveWriter(const ArchiveWriter&) = delete;
    ArchiveWriter& operator=(const ArchiveWriter&) = delete;

    /// An earlier entry of that name is in the archive no longer.
    void add(const std::string& name, std::string_view bytes);
    /// Copies a file's bytes. They begin at a whole page, so that they can be mapped.
    void add(const std::string& name, const FilePart& source);
    /// Returns when all is safe on disk.
    void finish();

  private:
    Entry& begin(const std::string& name, std::uint64_t size);

    const std::filesystem::path m_path;
    const base::FileDescriptor m_file;
    std::vector<Entry> m_entries;
    const std::uint64_t m_earlierEnd;
    std::uint64_t m_end;
    bool m_isFinished = false;
};

/// Copies what lies there into a file that is there and empty. Throws ArchiveError.
void copyOut(const FilePart& source, const std::filesystem::path& target);

} // namespace vantro::archive
