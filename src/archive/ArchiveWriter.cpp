#include "archive/ArchiveWriter.h"

#include "archive/ArchiveFile.h"
#include "base/Fatal.h"

#include <algorithm>
#include <functional>

#include <fcntl.h>
#include <unistd.h>

namespace vantro::archive {
namespace {

constexpr std::uint64_t pageSize = 4096;
constexpr std::size_t copiedAtOnce = std::size_t{1} << 20;

/// Gives each piece of a file's bytes to `take`, in order.
void forEachPiece(const FilePart& source, const std::function<void(std::string_view)>& take) {
    const auto file = openFile(source.file, O_RDONLY);
    std::string piece(std::min<std::uint64_t>(source.size, copiedAtOnce), '\0');
    for (std::uint64_t done = 0; done < source.size;) {
        const auto wanted = std::min<std::uint64_t>(source.size - done, copiedAtOnce);
        const auto got =
            readAt(file.get(), source.offset + done, {piece.data(), wanted}, source.file);
        if (got != wanted)
            fail(source.file, "it is shorter than it was");
        take({piece.data(), got});
        done += got;
    }
}

} // namespace

ArchiveWriter::ArchiveWriter(const std::filesystem::path& file) : ArchiveWriter(file, {}, 0) {}

ArchiveWriter::ArchiveWriter(const std::filesystem::path& file, std::span<const Entry> earlier,
                             std::uint64_t end)
    : m_path(file)
    , m_file(openFile(file, O_RDWR))
    , m_entries(earlier.begin(), earlier.end())
    , m_earlierEnd(end)
    , m_end(end) {
    // What a killed program has left there would stand behind what is written now.
    if (::ftruncate(m_file.get(), static_cast<off_t>(end)) != 0)
        failWithErrno(m_path);
}

ArchiveWriter::~ArchiveWriter() {
    if (!m_isFinished) [[maybe_unused]]
        const int ignored = ::ftruncate(m_file.get(), static_cast<off_t>(m_earlierEnd));
}

Entry& ArchiveWriter::begin(const std::string& name, std::uint64_t size) {
    std::erase_if(m_entries, [&](const Entry& entry) { return entry.name == name; });
    return m_entries.emplace_back(Entry{.name = name, .header = m_end, .size = size});
}

void ArchiveWriter::add(const std::string& name, std::string_view bytes) {
    auto& entry = begin(name, bytes.size());
    entry.checksum = checksum(bytes);
    const auto header = entryHeader(entry);
    writeAt(m_file.get(), m_end, header, m_path);
    writeAt(m_file.get(), m_end + header.size(), bytes, m_path);
    m_end += header.size() + bytes.size();
}

void ArchiveWriter::add(const std::string& name, const FilePart& source) {
    auto& entry = begin(name, source.size);
    auto place = m_end + entryHeader(entry, pageSize).size();
    forEachPiece(source, [&](std::string_view piece) {
        entry.checksum = checksum(piece, entry.checksum);
        writeAt(m_file.get(), place, piece, m_path);
        place += piece.size();
    });
    writeAt(m_file.get(), m_end, entryHeader(entry, pageSize), m_path); // its checksum is known now
    m_end = place;
}

void ArchiveWriter::finish() {
    base::require(!m_isFinished, "an archive is finished once");
    const auto directory = directoryBytes(m_entries, m_end);
    writeAt(m_file.get(), m_end, directory.records, m_path);
    // The ending tells that everything before it is there.
    if (::fdatasync(m_file.get()) != 0)
        failWithErrno(m_path);
    writeAt(m_file.get(), m_end + directory.records.size(), directory.ending, m_path);
    if (::fsync(m_file.get()) != 0)
        failWithErrno(m_path);
    m_isFinished = true;
}

void copyOut(const FilePart& source, const std::filesystem::path& target) {
    const auto file = openFile(target, O_WRONLY);
    std::uint64_t place = 0;
    forEachPiece(source, [&](std::string_view piece) {
        writeAt(file.get(), place, piece, target);
        place += piece.size();
    });
}

} // namespace vantro::archive
