#include "archive/StoredArchive.h"

#include "archive/ArchiveError.h"
#include "archive/ArchiveFile.h"

#include <algorithm>
#include <array>
#include <set>

#include <fcntl.h>
#include <fmt/format.h>

namespace vantro::archive {
namespace {

namespace fs = std::filesystem;

// What a save that did not come to its end may have left behind the archive: an edit and a picture.
constexpr std::uint64_t farthestBack = std::uint64_t{512} << 20;
constexpr std::uint64_t searchedAtOnce = std::uint64_t{1} << 20;
constexpr std::uint64_t largestDirectory = std::uint64_t{16} << 20; // thousands of entries

struct FoundDirectory {
    std::vector<Entry> entries;
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

std::string bytesAt(int fd, std::uint64_t place, std::uint64_t size, const fs::path& file) {
    std::string bytes(size, '\0');
    bytes.resize(readAt(fd, place, bytes, file));
    return bytes;
}

/// The directory whose ending stands at `ending`, if one does.
std::optional<FoundDirectory> directoryEndingAt(int fd, std::uint64_t ending, std::uint64_t size,
                                                const fs::path& file) {
    const auto before = std::min<std::uint64_t>(ending, largestBeforeEnding);
    const auto place = directoryPlace(bytesAt(fd, ending, endingSize, file),
                                      bytesAt(fd, ending - before, before, file));
    if (!place || place->size > largestDirectory || place->begin > ending ||
        place->begin + place->size > ending || ending + endingSize + place->commentSize > size)
        return {};
    auto entries = directoryEntries(bytesAt(fd, place->begin, place->size, file), place->count);
    if (!entries)
        return {};
    return FoundDirectory{std::move(*entries), place->begin,
                          ending + endingSize + place->commentSize};
}

std::optional<FoundDirectory> newestDirectory(int fd, const fs::path& file) {
    const auto size = sizeOf(fd, file);
    const auto leastPlace = size > farthestBack ? size - farthestBack : 0;
    for (auto end = size; end >= leastPlace + endingSize;) {
        const auto begin = end - leastPlace > searchedAtOnce ? end - searchedAtOnce : leastPlace;
        const auto bytes = bytesAt(fd, begin, end - begin, file);
        for (auto at = bytes.rfind(endingSignature); at != std::string::npos;
             at = at == 0 ? std::string::npos : bytes.rfind(endingSignature, at - 1))
            if (auto found = directoryEndingAt(fd, begin + at, size, file))
                return found;
        if (begin == leastPlace)
            break;
        end = begin + endingSignature.size() - 1; // one may lie across the border
    }
    return {};
}

bool staysInside(const std::string& name) {
    const fs::path path(name);
    return !name.empty() && path.is_relative() && name.find('\\') == std::string::npos &&
           std::ranges::none_of(path, [](const fs::path& part) { return part == ".."; });
}

[[noreturn]] void failToFind(const fs::path& file, const Entry& entry) {
    fail(file, fmt::format("{} is not where its directory says", entry.name));
}

} // namespace

StoredArchive::StoredArchive(fs::path file, std::vector<Entry> entries, std::uint64_t end)
    : m_file(std::move(file)), m_entries(std::move(entries)), m_end(end) {}

StoredArchive StoredArchive::open(const fs::path& file) {
    const auto fd = openFile(file, O_RDONLY);
    auto found = newestDirectory(fd.get(), file);
    if (!found) {
        constexpr std::string_view anyArchive{"PK\3\4", 4};
        const bool began = bytesAt(fd.get(), 0, anyArchive.size(), file) == anyArchive;
        fail(file, began ? "it is not complete: its end is missing" : "it is not a zip file");
    }
    StoredArchive archive(file, std::move(found->entries), found->end);
    archive.requireSound(fd.get(), found->begin);
    return archive;
}

void StoredArchive::requireSound(int fd, std::uint64_t directory) const {
    std::set<std::string_view> names;
    for (const auto& entry : m_entries) {
        if (!staysInside(entry.name))
            fail(m_file, fmt::format("it names a file outside of itself, {}", entry.name));
        if (!names.insert(entry.name).second)
            fail(m_file, fmt::format("it holds {} twice", entry.name));
        if (entry.isEncrypted)
            fail(m_file, fmt::format("{} in it is encrypted", entry.name));
        if (entry.method != 0)
            fail(m_file,
                 fmt::format("{} in it is compressed, but must be stored as it is", entry.name));
        if (entry.header > directory || entry.size > directory)
            failToFind(m_file, entry);
        const auto headerSize = sizeOfHeader(bytesAt(fd, entry.header, entryHeaderSize, m_file));
        if (!headerSize || entry.header + *headerSize + entry.size > directory)
            failToFind(m_file, entry);
    }
}

const Entry* StoredArchive::find(std::string_view name) const {
    const auto found = std::ranges::find(m_entries, name, &Entry::name);
    return found == m_entries.end() ? nullptr : &*found;
}

FilePart StoredArchive::part(const Entry& entry) const {
    const auto fd = openFile(m_file, O_RDONLY);
    const auto headerSize = sizeOfHeader(bytesAt(fd.get(), entry.header, entryHeaderSize, m_file));
    if (!headerSize)
        failToFind(m_file, entry);
    return {.file = m_file,
            .offset = entry.header + *headerSize,
            .size = entry.size,
            .checksum = entry.checksum};
}

std::vector<char> StoredArchive::read(const Entry& entry, std::uint64_t most) const {
    auto bytes = readAll(part(entry), most);
    if (checksum({bytes.data(), bytes.size()}) != entry.checksum)
        fail(m_file, fmt::format("{} in it is damaged", entry.name));
    return bytes;
}

} // namespace vantro::archive
