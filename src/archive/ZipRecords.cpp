#include "archive/ZipRecords.h"

#include <algorithm>
#include <concepts>

namespace vantro::archive {
namespace {

constexpr std::string_view entrySignature{"PK\3\4", 4};
constexpr std::string_view descriptionSignature{"PK\1\2", 4};
constexpr std::string_view largeEndingSignature{"PK\6\6", 4};
constexpr std::string_view largeLocatorSignature{"PK\6\7", 4};
constexpr std::size_t descriptionSize = 46;
constexpr std::size_t largeEndingSize = 56;
constexpr std::size_t largeLocatorSize = 20;
static_assert(largeEndingSize + largeLocatorSize == largestBeforeEnding);

constexpr std::uint32_t elsewhere = 0xFFFFFFFF; // the number stands in the zip64 form
constexpr std::uint16_t elsewhereShort = 0xFFFF;
constexpr std::uint16_t largeNumbers = 0x0001; // kinds of extra fields
constexpr std::uint16_t padding = 0xD935;      // as Android's zipalign writes it
constexpr std::uint16_t usualVersion = 10;
constexpr std::uint16_t largeVersion = 45;
constexpr std::uint16_t encryptedFlag = 0x0001;
constexpr std::uint16_t utf8Flag = 0x0800;
constexpr std::uint16_t firstDay = 0x0021; // 1980-01-01: equal projects are equal files

/// Little-endian numbers one after the other.
class Bytes {
  public:
    Bytes& text(std::string_view bytes) {
        m_bytes += bytes;
        return *this;
    }
    template <std::unsigned_integral Number>
    Bytes& number(Number value) {
        for (std::size_t i = 0; i < sizeof(Number); ++i)
            m_bytes += static_cast<char>(static_cast<std::uint64_t>(value) >> (8 * i) & 0xFF);
        return *this;
    }
    Bytes& u16(std::uint64_t value) { return number(static_cast<std::uint16_t>(value)); }
    Bytes& u32(std::uint64_t value) { return number(static_cast<std::uint32_t>(value)); }
    Bytes& u64(std::uint64_t value) { return number(value); }
    std::string take() { return std::move(m_bytes); }
    std::size_t size() const { return m_bytes.size(); }

  private:
    std::string m_bytes;
};

std::uint64_t numberAt(std::string_view bytes, std::size_t place, std::size_t size) {
    std::uint64_t value = 0;
    for (std::size_t i = size; i-- > 0;)
        value = value << 8 | static_cast<std::uint8_t>(bytes[place + i]);
    return value;
}

std::uint16_t u16(std::string_view bytes, std::size_t place) {
    return static_cast<std::uint16_t>(numberAt(bytes, place, 2));
}
std::uint32_t u32(std::string_view bytes, std::size_t place) {
    return static_cast<std::uint32_t>(numberAt(bytes, place, 4));
}
std::uint64_t u64(std::string_view bytes, std::size_t place) {
    return numberAt(bytes, place, 8);
}

std::uint64_t shortForm(std::uint64_t value) {
    return std::min<std::uint64_t>(value, elsewhere);
}

std::uint16_t flagsOf(const std::string& name) {
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    return std::ranges::all_of(name, isAscii) ? 0 : utf8Flag;
}

/// Takes the zip64 form of those numbers that stand there, in the order that they have.
bool takeLargeNumbers(std::string_view extra, std::span<std::uint64_t* const> numbers) {
    while (extra.size() >= 4) {
        const auto kind = u16(extra, 0);
        const std::size_t size = u16(extra, 2);
        if (extra.size() < 4 + size)
            return false;
        if (kind == largeNumbers) {
            if (size < 8 * numbers.size())
                return false;
            for (std::size_t i = 0; i < numbers.size(); ++i)
                *numbers[i] = u64(extra, 4 + 8 * i);
            return true;
        }
        extra.remove_prefix(4 + size);
    }
    return false;
}

std::string description(const Entry& entry) {
    Bytes extra;
    if (entry.size >= elsewhere)
        extra.u64(entry.size).u64(entry.size);
    if (entry.header >= elsewhere)
        extra.u64(entry.header);
    const std::size_t extraSize = extra.size() > 0 ? extra.size() + 4 : 0;
    const auto version = extraSize > 0 ? largeVersion : usualVersion;
    Bytes bytes;
    bytes.text(descriptionSignature).u16(version).u16(version).u16(flagsOf(entry.name));
    bytes.u16(0).u16(0).u16(firstDay).u32(entry.checksum);
    bytes.u32(shortForm(entry.size)).u32(shortForm(entry.size));
    bytes.u16(entry.name.size()).u16(extraSize);
    bytes.u16(0).u16(0).u16(0).u32(0); // no comment, one disk, no attributes
    bytes.u32(shortForm(entry.header)).text(entry.name);
    if (extraSize > 0)
        bytes.u16(largeNumbers).u16(extra.size()).text(extra.take());
    return bytes.take();
}

/// Takes the first of `records` off; nothing where that is none.
std::optional<Entry> takeDescription(std::string_view& records) {
    if (records.size() < descriptionSize || !records.starts_with(descriptionSignature))
        return {};
    const std::size_t nameSize = u16(records, 28);
    const std::size_t extraSize = u16(records, 30);
    const std::size_t size = descriptionSize + nameSize + extraSize + u16(records, 32);
    if (records.size() < size)
        return {};
    Entry entry{.name = std::string(records.substr(descriptionSize, nameSize)),
                .header = u32(records, 42),
                .size = u32(records, 24),
                .checksum = u32(records, 16),
                .method = u16(records, 10),
                .isEncrypted = (u16(records, 8) & encryptedFlag) != 0};
    std::uint64_t packedSize = u32(records, 20);
    std::vector<std::uint64_t*> large;
    for (auto* number : {&entry.size, &packedSize, &entry.header})
        if (*number == elsewhere)
            large.push_back(number);
    if (!large.empty() &&
        !takeLargeNumbers(records.substr(descriptionSize + nameSize, extraSize), large))
        return {};
    records.remove_prefix(size);
    return entry;
}

} // namespace

std::string entryHeader(const Entry& entry, std::uint64_t alignment) {
    Bytes extra;
    const bool isLarge = entry.size >= elsewhere;
    if (isLarge)
        extra.u16(largeNumbers).u16(16).u64(entry.size).u64(entry.size);
    const auto begin = entry.header + entryHeaderSize + entry.name.size() + extra.size();
    if (begin % alignment != 0) {
        constexpr std::size_t least = 6; // kind, size, and the alignment that it stands for
        const auto missing = (alignment - (begin + least) % alignment) % alignment;
        extra.u16(padding).u16(2 + missing).u16(alignment).text(std::string(missing, '\0'));
    }
    Bytes bytes;
    bytes.text(entrySignature).u16(isLarge ? largeVersion : usualVersion);
    bytes.u16(flagsOf(entry.name)).u16(0).u16(0).u16(firstDay).u32(entry.checksum);
    bytes.u32(shortForm(entry.size)).u32(shortForm(entry.size));
    bytes.u16(entry.name.size()).u16(extra.size()).text(entry.name).text(extra.take());
    return bytes.take();
}

std::optional<std::uint64_t> sizeOfHeader(std::string_view header) {
    if (header.size() < entryHeaderSize || !header.starts_with(entrySignature))
        return {};
    return entryHeaderSize + u16(header, 26) + u16(header, 28);
}

DirectoryBytes directoryBytes(std::span<const Entry> entries, std::uint64_t place) {
    Bytes records;
    for (const auto& entry : entries)
        records.text(description(entry));
    const std::uint64_t size = records.size();
    const std::uint64_t count = entries.size();
    if (place >= elsewhere || size >= elsewhere || count >= elsewhereShort) {
        records.text(largeEndingSignature).u64(largeEndingSize - 12);
        records.u16(largeVersion).u16(largeVersion).u32(0).u32(0);
        records.u64(count).u64(count).u64(size).u64(place);
        records.text(largeLocatorSignature).u32(0).u64(place + size).u32(1);
    }
    Bytes ending;
    const auto shortCount = std::min<std::uint64_t>(count, elsewhereShort);
    ending.text(endingSignature).u16(0).u16(0).u16(shortCount).u16(shortCount);
    ending.u32(shortForm(size)).u32(shortForm(place)).u16(0);
    return {.records = records.take(), .ending = ending.take()};
}

std::optional<DirectoryPlace> directoryPlace(std::string_view bytes, std::string_view before) {
    if (bytes.size() < endingSize || !bytes.starts_with(endingSignature))
        return {};
    DirectoryPlace place{.begin = u32(bytes, 16),
                         .size = u32(bytes, 12),
                         .count = u16(bytes, 10),
                         .commentSize = u16(bytes, 20)};
    if (place.begin != elsewhere && place.size != elsewhere && place.count != elsewhereShort)
        return place;
    if (before.size() < largestBeforeEnding)
        return {};
    before.remove_prefix(before.size() - largestBeforeEnding);
    if (!before.starts_with(largeEndingSignature) ||
        !before.substr(largeEndingSize).starts_with(largeLocatorSignature))
        return {};
    place.count = u64(before, 32);
    place.size = u64(before, 40);
    place.begin = u64(before, 48);
    return place;
}

std::optional<std::vector<Entry>> directoryEntries(std::string_view records, std::uint64_t count) {
    std::vector<Entry> entries;
    while (!records.empty() && entries.size() < count) {
        auto entry = takeDescription(records);
        if (!entry)
            return {};
        entries.push_back(std::move(*entry));
    }
    if (!records.empty() || entries.size() != count)
        return {};
    return entries;
}

} // namespace vantro::archive
