#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vantro::exporting::gif {

/// What one pixel may be coded as: either symbol shows the same. Equal where there is no choice.
struct Symbols {
    std::uint8_t one = 0;
    std::uint8_t other = 0;
};

/// GIF's variant of LZW, which picks among equivalent symbols whatever continues a known string
/// for longest. One thread at a time.
class LzwEncoder {
  public:
    /// Appends an image's data: the code size byte, the sub-blocks, the terminator. Symbols are
    /// below 2^`bits`, `bits` from 2 to 8; at least one pixel.
    void encode(std::span<const Symbols> pixels, int bits, std::vector<std::uint8_t>& out);

  private:
    static constexpr int hashBits = 13; // twice the codes: short searches, and still half of L1
    static constexpr int codeBits = 12;
    static constexpr unsigned mostCodes = 1U << codeBits;
    static constexpr int noCode = -1;

    struct Match {
        int code = noCode;
        std::size_t end = 0; ///< one past the last pixel that the code stands for
    };

    void encodeCodes();
    void startDictionary();
    std::uint32_t* slotFor(int prefix, std::uint8_t symbol);
    int find(int prefix, std::uint8_t symbol);
    /// The entry that is made; none where there is no prefix or the string is known.
    std::uint32_t* learn(int prefix, std::uint8_t symbol);
    Match longestFrom(std::uint8_t first, std::size_t at);
    Match matchAfter(int previous, std::size_t at);
    /// Takes the next code; codes grow by a bit when the one in use runs out.
    void countCode();
    void put(unsigned code);
    void flushBits();

    std::span<const Symbols> m_pixels;
    std::array<std::uint32_t, std::size_t{1} << hashBits> m_table{};
    std::vector<std::uint8_t> m_bytes;
    int m_bits = 8;  ///< of a symbol
    int m_width = 9; ///< of a code, by now
    unsigned m_nextCode = 0;
    std::uint64_t m_pendingBits = 0;
    int m_pendingCount = 0;
};

} // namespace vantro::exporting::gif
