#include "export/gif/GifBlocks.h"

#include <algorithm>
#include <bit>
#include <string_view>

namespace vantro::exporting::gif {
namespace {

constexpr std::uint8_t hasColorTable = 0x80;
constexpr std::uint8_t eightBitsAPrimary = 0x70;
constexpr std::uint8_t hasTransparentIndex = 0x01;
constexpr std::uint8_t leaveInPlace = 1 << 2;
constexpr std::size_t delayAt = 4; // from the start of an image

void appendNumber(Bytes& bytes, int number) {
    bytes.push_back(static_cast<std::uint8_t>(number & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(number >> 8));
}

void appendText(Bytes& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

void appendTable(Bytes& bytes, std::span<const Color> table, int bits) {
    const auto entries = std::size_t{1} << bits;
    for (std::size_t i = 0; i < entries; ++i) {
        const Color color = i < table.size() ? table[i] : 0;
        for (const int channel : {red(color), green(color), blue(color)})
            bytes.push_back(static_cast<std::uint8_t>(channel));
    }
}

} // namespace

int tableBits(int colors) {
    return std::max(1, static_cast<int>(std::bit_width(static_cast<unsigned>(colors - 1))));
}

Bytes fileHeader(int width, int height, std::span<const Color> table) {
    Bytes bytes;
    appendText(bytes, "GIF89a");
    appendNumber(bytes, width);
    appendNumber(bytes, height);
    // Always 256 entries: transparentIndex lies within.
    bytes.insert(bytes.end(), {hasColorTable | eightBitsAPrimary | 7,
                               0,   // background color
                               0}); // square pixels
    appendTable(bytes, table, 8);
    bytes.insert(bytes.end(), {0x21, 0xFF, 11});
    appendText(bytes, "NETSCAPE2.0");
    bytes.insert(bytes.end(), {3, 1, 0, 0, 0}); // loop count 0: for ever
    return bytes;
}

Bytes imageHeader(Region region, int transparent, std::span<const Color> table) {
    Bytes bytes{0x21, 0xF9, 4};
    const bool isTransparent = transparent >= 0;
    bytes.push_back(leaveInPlace | (isTransparent ? hasTransparentIndex : 0));
    appendNumber(bytes, 0);
    bytes.push_back(static_cast<std::uint8_t>(isTransparent ? transparent : 0));
    bytes.push_back(0);
    bytes.push_back(0x2C);
    for (const int number : {region.x, region.y, region.width, region.height})
        appendNumber(bytes, number);
    if (table.empty()) {
        bytes.push_back(0);
        return bytes;
    }
    const auto bits = tableBits(static_cast<int>(table.size()));
    bytes.push_back(static_cast<std::uint8_t>(hasColorTable | (bits - 1)));
    appendTable(bytes, table, bits);
    return bytes;
}

Bytes emptyImage() {
    auto bytes = imageHeader({0, 0, 1, 1}, 0, {});
    // One pixel of symbol 0 at code size 2: the codes clear (4), 0 and end (5), 3 bits each.
    bytes.insert(bytes.end(), {2, 2, 0x44, 0x01, 0});
    return bytes;
}

void setDelay(std::span<std::uint8_t> image, int hundredths) {
    image[delayAt] = static_cast<std::uint8_t>(hundredths & 0xFF);
    image[delayAt + 1] = static_cast<std::uint8_t>(hundredths >> 8);
}

} // namespace vantro::exporting::gif
