#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace vantro::archive {

/// Where the bytes of a file lie: in a file of their own, or as a part of an archive.
struct FilePart {
    std::filesystem::path file;
    std::uint64_t offset = 0;              ///< bytes
    std::uint64_t size = 0;                ///< bytes
    std::optional<std::uint32_t> checksum; ///< CRC-32, told of an archive's entry

    bool isWholeFile() const { return !checksum; }
};

/// All of it. Throws ArchiveError, also where it is larger than `most` bytes.
std::vector<char> readAll(const FilePart& part, std::uint64_t most);

} // namespace vantro::archive
