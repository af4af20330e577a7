#include "export/gif/LzwEncoder.h"

#include <algorithm>

namespace vantro::exporting::gif {
namespace {

constexpr std::size_t largestSubBlock = 255;

// How many equally long strings are followed at a time: one takes 6 % more bytes than four, eight
// save nothing worth their time.
constexpr int mostBranches = 4;

// Entries of the dictionary's table: the prefix's code, the symbol, the code of the two together.
// No entry has all bits set, since a prefix is always older than the code.
constexpr std::uint32_t empty = 0xFFFFFFFF;

std::uint32_t keyOf(int prefix, std::uint8_t symbol) {
    return static_cast<std::uint32_t>(prefix) << 8 | symbol;
}

} // namespace

void LzwEncoder::encode(std::span<const Symbols> pixels, int bits, std::vector<std::uint8_t>& out) {
    m_pixels = pixels;
    m_bits = bits;
    m_bytes.clear();
    m_pendingBits = 0;
    m_pendingCount = 0;
    encodeCodes();
    flushBits();
    out.push_back(static_cast<std::uint8_t>(bits));
    for (std::size_t at = 0; at < m_bytes.size(); at += largestSubBlock) {
        const auto size = std::min(largestSubBlock, m_bytes.size() - at);
        const auto block = m_bytes.begin() + static_cast<std::ptrdiff_t>(at);
        out.push_back(static_cast<std::uint8_t>(size));
        out.insert(out.end(), block, block + static_cast<std::ptrdiff_t>(size));
    }
    out.push_back(0);
}

void LzwEncoder::encodeCodes() {
    const unsigned clearCode = 1U << m_bits;
    startDictionary();
    put(clearCode);
    auto match = matchAfter(noCode, 0);
    for (;;) {
        put(static_cast<unsigned>(match.code));
        if (match.end == m_pixels.size())
            break;
        if (m_nextCode < mostCodes) {
            match = matchAfter(match.code, match.end);
            continue;
        }
        // A full dictionary fits the pixels to come so much worse that starting afresh at once beat
        // every rule of waiting that was tried.
        put(clearCode);
        startDictionary();
        match = matchAfter(noCode, match.end);
    }
    countCode(); // a decoder counts one more before it reads the end
    put(clearCode + 1);
}

void LzwEncoder::startDictionary() {
    m_table.fill(empty);
    m_width = m_bits + 1;
    m_nextCode = (1U << m_bits) + 2;
}

std::uint32_t* LzwEncoder::slotFor(int prefix, std::uint8_t symbol) {
    const auto key = keyOf(prefix, symbol);
    auto at = (key * 0x9E3779B1U) >> (32 - hashBits);
    while (m_table[at] != empty && m_table[at] >> codeBits != key)
        at = (at + 1) & ((1U << hashBits) - 1);
    return &m_table[at];
}

int LzwEncoder::find(int prefix, std::uint8_t symbol) {
    const auto entry = *slotFor(prefix, symbol);
    return entry == empty ? noCode : static_cast<int>(entry & (mostCodes - 1));
}

std::uint32_t* LzwEncoder::learn(int prefix, std::uint8_t symbol) {
    if (prefix == noCode)
        return nullptr;
    auto* slot = slotFor(prefix, symbol);
    if (*slot != empty)
        return nullptr;
    *slot = keyOf(prefix, symbol) << codeBits | m_nextCode;
    return slot;
}

/// All strings that the pixels may be read as are followed side by side, up to mostBranches.
LzwEncoder::Match LzwEncoder::longestFrom(std::uint8_t first, std::size_t at) {
    std::array<int, mostBranches> live{first};
    int count = 1;
    for (++at; at < m_pixels.size(); ++at) {
        const auto pixel = m_pixels[at];
        std::array<int, mostBranches> next;
        int found = 0;
        const auto follow = [&](int string, std::uint8_t symbol) {
            if (found == mostBranches)
                return;
            const int code = find(string, symbol);
            if (code != noCode)
                next[static_cast<std::size_t>(found++)] = code;
        };
        for (int i = 0; i < count; ++i) {
            follow(live[static_cast<std::size_t>(i)], pixel.one);
            if (pixel.other != pixel.one)
                follow(live[static_cast<std::size_t>(i)], pixel.other);
        }
        if (found == 0)
            break;
        live = next;
        count = found;
    }
    return {live[0], at};
}

/// The dictionary learns `previous` with the first symbol of what follows, which may itself be
/// continued by what was just learnt. Where that symbol is open, both are tried.
LzwEncoder::Match LzwEncoder::matchAfter(int previous, std::size_t at) {
    const auto pixel = m_pixels[at];
    auto* learnt = learn(previous, pixel.one);
    auto match = longestFrom(pixel.one, at);
    if (pixel.other != pixel.one) {
        if (learnt != nullptr)
            *learnt = empty; // it was the last to come: no other entry's search passes over it
        auto* learntOther = learn(previous, pixel.other);
        const auto other = longestFrom(pixel.other, at);
        if (other.end > match.end) {
            match = other;
        } else {
            if (learntOther != nullptr)
                *learntOther = empty;
            learn(previous, pixel.one);
        }
    }
    if (previous != noCode)
        countCode();
    return match;
}

void LzwEncoder::countCode() {
    if (m_nextCode >= mostCodes)
        return;
    if (m_nextCode == 1U << m_width)
        ++m_width;
    ++m_nextCode;
}

void LzwEncoder::put(unsigned code) {
    m_pendingBits |= std::uint64_t{code} << m_pendingCount;
    m_pendingCount += m_width;
    for (; m_pendingCount >= 8; m_pendingCount -= 8, m_pendingBits >>= 8)
        m_bytes.push_back(static_cast<std::uint8_t>(m_pendingBits));
}

void LzwEncoder::flushBits() {
    if (m_pendingCount > 0)
        m_bytes.push_back(static_cast<std::uint8_t>(m_pendingBits));
}

} // namespace vantro::exporting::gif
