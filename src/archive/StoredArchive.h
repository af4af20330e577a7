#pragma once

#include "archive/FilePart.h"
#include "archive/ZipRecords.h"
#include "base/FileDescriptor.h"

#include <string_view>

namespace vantro::archive {

/// A zip file whose entries are stored as they are, so that they are read in place. A plain record
/// of its directory; the file is not kept open.
///
/// The newest directory that is whole counts. What follows it was begun by a program that did not
/// come to its end, and is passed over. Any thread.
class StoredArchive {
  public:
    /// Throws ArchiveError where it cannot be read, is none, lacks its end, or where an entry is
    /// compressed, encrypted, there twice, reaches beyond the file or out of the folder that it is
    /// unpacked to.
    static StoredArchive open(const std::filesystem::path& file);

    const std::vector<Entry>& entries() const { return m_entries; }
    const Entry* find(std::string_view name) const;
    /// The bytes of one of the entries. Throws ArchiveError.
    FilePart part(const Entry& entry) const;
    /// An entry's bytes, compared with their checksum. Throws ArchiveError.
    std::vector<char> read(const Entry& entry, std::uint64_t most) const;
    /// Where the directory's end is; what is appended begins there.
    std::uint64_t end() const { return m_end; }

  private:
    StoredArchive(std::filesystem::path file, std::vector<Entry> entries, std::uint64_t end);
    void requireSound(int fd, std::uint64_t directory) const;

    std::filesystem::path m_file;
    std::vector<Entry> m_entries;
    std::uint64_t m_end = 0;
};

} // namespace vantro::archive
