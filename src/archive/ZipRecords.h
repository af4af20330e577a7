#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The records of a zip file, as PKWARE's APPNOTE.TXT 6.3 lays them out: bytes in, bytes out. Only
/// what is stored uncompressed is ever written. Sizes and places are bytes; numbers that 32 bits do
/// not hold are written in the form of zip64.
namespace vantro::archive {

/// A file in an archive.
struct Entry {
    std::string name;           ///< with "/" between folders
    std::uint64_t header = 0;   ///< where its own header begins
    std::uint64_t size = 0;     ///< of its bytes
    std::uint32_t checksum = 0; ///< CRC-32 of them
    std::uint16_t method = 0;   ///< 0: stored
    bool isEncrypted = false;
    bool operator==(const Entry&) const = default;
};

/// The header before an entry's bytes, which begin at a multiple of `alignment`, or where they may
/// if that is 1.
std::string entryHeader(const Entry& entry, std::uint64_t alignment = 1);

/// Where the bytes of an entry begin after its header; nothing where `header`, its first
/// `entryHeaderSize` bytes, is none.
constexpr std::size_t entryHeaderSize = 30;
std::optional<std::uint64_t> sizeOfHeader(std::string_view header);

/// Describes all entries, to stand at `place` behind them. The archive is whole once `ending`
/// stands behind it.
struct DirectoryBytes {
    std::string records;
    std::string ending;
};
DirectoryBytes directoryBytes(std::span<const Entry> entries, std::uint64_t place);

constexpr std::string_view endingSignature{"PK\5\6", 4};
constexpr std::size_t endingSize = 22;

/// Where a directory lies that an ending belongs to.
struct DirectoryPlace {
    std::uint64_t begin = 0;
    std::uint64_t size = 0;
    std::uint64_t count = 0;
    std::size_t commentSize = 0; ///< behind the ending
};

/// What the ending says that starts `bytes`; `before` is what precedes it, where zip64 keeps large
/// numbers.
constexpr std::size_t largestBeforeEnding = 76;
std::optional<DirectoryPlace> directoryPlace(std::string_view bytes, std::string_view before);
/// Nothing unless `records` are exactly `count` descriptions of entries.
std::optional<std::vector<Entry>> directoryEntries(std::string_view records, std::uint64_t count);

} // namespace vantro::archive
