#include "render/software/RowKernels.h"

#include <array>
#include <cstddef>
#include <cstring>

// Highway compiles the part between its two markers once for each instruction set.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/software/RowKernels.cpp"
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace vantro::render::software::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

using Pixels = hn::ScalableTag<std::uint32_t>;
using Indices = hn::RebindToSigned<Pixels>;
using Words = hn::Repartition<std::int16_t, Pixels>;
using UnsignedWords = hn::Repartition<std::uint16_t, Pixels>;
using Bytes = hn::Repartition<std::uint8_t, Pixels>;
using PixelVector = hn::Vec<Pixels>;
using WordVector = hn::Vec<Words>;

/// Pixels are worked on as two vectors of words: one of the even channels (blue, red), one of the
/// odd ones (green, alpha). So nothing has to cross lanes, and both take the same weights.
struct Channels {
    WordVector even;
    WordVector odd;
};

/// Channels with 7 fractional bits, which just fits into a signed word.
HWY_INLINE Channels split(PixelVector pixels) {
    const UnsignedWords du;
    const Words d;
    const auto words = hn::BitCast(du, pixels);
    const auto mask = hn::Set(du, 0x7F80);
    return {hn::BitCast(d, hn::And(hn::ShiftLeft<7>(words), mask)),
            hn::BitCast(d, hn::And(hn::ShiftRight<1>(words), mask))};
}

/// Rounds and packs what `split` took apart.
HWY_INLINE PixelVector join(Channels channels) {
    const UnsignedWords du;
    const auto half = hn::Set(du, 64);
    const auto even = hn::ShiftRight<7>(hn::Add(hn::BitCast(du, channels.even), half));
    const auto odd = hn::ShiftLeft<1>(hn::Add(hn::BitCast(du, channels.odd), half));
    return hn::BitCast(Pixels(), hn::Or(even, hn::And(odd, hn::Set(du, 0xFF00))));
}

/// a + (b − a) × weight.
HWY_INLINE WordVector mix(WordVector a, WordVector b, WordVector weight) {
    return hn::Add(a, hn::MulFixedPoint15(hn::Sub(b, a), weight));
}

HWY_INLINE PixelVector loadPixels(const std::uint8_t* bytes) {
    return hn::BitCast(Pixels(), hn::LoadU(Bytes(), bytes));
}

HWY_INLINE void storePixels(PixelVector pixels, std::uint8_t* bytes) {
    hn::StoreU(hn::BitCast(Bytes(), pixels), Bytes(), bytes);
}

template <TapReach reach>
HWY_INLINE PixelVector pick(const std::uint8_t* first, hn::Vec<Indices> index) {
    const Pixels d;
    const Indices di;
    if constexpr (reach == TapReach::oneVector) {
        return hn::TableLookupLanes(loadPixels(first), hn::IndicesFromVec(d, index));
    } else if constexpr (reach == TapReach::twoVectors) {
        const auto lastLane = hn::Set(di, static_cast<std::int32_t>(hn::Lanes(d)) - 1);
        const auto inSecond = hn::Gt(index, lastLane);
        const auto lane = hn::IndicesFromVec(d, hn::And(index, lastLane));
        const auto low = hn::TableLookupLanes(loadPixels(first), lane);
        const auto high = hn::TableLookupLanes(loadPixels(first + hn::Lanes(d) * 4), lane);
        return hn::IfThenElse(hn::RebindMask(d, inSecond), high, low);
    } else {
        std::array<std::uint32_t, HWY_MAX_BYTES / 4> picked;
        std::array<std::int32_t, HWY_MAX_BYTES / 4> offsets;
        hn::StoreU(index, di, offsets.data());
        for (std::size_t lane = 0; lane < hn::Lanes(d); ++lane)
            std::memcpy(&picked[lane], first + std::ptrdiff_t{offsets[lane]} * 4, 4);
        return hn::LoadU(d, picked.data());
    }
}

template <TapReach reach>
void filterColumnsReaching(const ColumnTaps& taps, const std::uint8_t* row, std::int16_t* out) {
    const Pixels d;
    const Words words;
    const auto lanes = hn::Lanes(d);
    for (int block = 0; block < taps.blocks; ++block) {
        const auto offset = static_cast<std::size_t>(block) * lanes;
        const auto index = hn::LoadU(Indices(), taps.indices + offset);
        const auto weight = hn::BitCast(words, hn::LoadU(d, taps.weights + offset));
        const std::uint8_t* first = row + std::ptrdiff_t{taps.bases[block]} * 4;
        const Channels left = split(pick<reach>(first, index));
        const Channels right = split(pick<reach>(first + 4, index));
        std::int16_t* target = out + offset * 4;
        hn::StoreU(mix(left.even, right.even, weight), words, target);
        hn::StoreU(mix(left.odd, right.odd, weight), words, target + hn::Lanes(words));
    }
}

void filterColumnsHere(const ColumnTaps& taps, const std::uint8_t* row, std::int16_t* out) {
    if (taps.reach == TapReach::oneVector)
        filterColumnsReaching<TapReach::oneVector>(taps, row, out);
    else if (taps.reach == TapReach::twoVectors)
        filterColumnsReaching<TapReach::twoVectors>(taps, row, out);
    else
        filterColumnsReaching<TapReach::anywhere>(taps, row, out);
}

/// Calls `vector(index of the first pixel, where its pixels are to go)` for each whole or begun
/// vector of `count` pixels; the last vector's surplus does not reach `out`.
template <typename Function>
HWY_INLINE void forEachVector(int count, std::uint8_t* out, const Function& vector) {
    const int lanes = static_cast<int>(hn::Lanes(Pixels()));
    int x = 0;
    for (; x + lanes <= count; x += lanes)
        vector(x, out + std::ptrdiff_t{x} * 4);
    if (x < count) {
        std::array<std::uint8_t, HWY_MAX_BYTES> last{};
        const auto bytes = static_cast<std::size_t>(count - x) * 4;
        std::memcpy(last.data(), out + std::ptrdiff_t{x} * 4, bytes);
        vector(x, last.data());
        std::memcpy(out + std::ptrdiff_t{x} * 4, last.data(), bytes);
    }
}

void mixRowsHere(const std::int16_t* upper, const std::int16_t* lower, std::int16_t weight,
                 int count, std::uint8_t* out) {
    const Words d;
    const auto share = hn::Set(d, weight);
    forEachVector(count, out, [&](int x, std::uint8_t* target) HWY_ATTR {
        const auto even = std::ptrdiff_t{x} * 4;
        const auto odd = even + static_cast<std::ptrdiff_t>(hn::Lanes(d));
        storePixels(join({mix(hn::LoadU(d, upper + even), hn::LoadU(d, lower + even), share),
                          mix(hn::LoadU(d, upper + odd), hn::LoadU(d, lower + odd), share)}),
                    target);
    });
}

/// value × share / 255, rounded, for bytes in words.
HWY_INLINE hn::Vec<UnsignedWords> scaled(hn::Vec<UnsignedWords> value,
                                         hn::Vec<UnsignedWords> share) {
    const auto product = hn::Add(hn::Mul(value, share), hn::Set(UnsignedWords(), 128));
    return hn::ShiftRight<8>(hn::Add(product, hn::ShiftRight<8>(product)));
}

/// `pixels` × share / 255 in each channel; the word lanes of one pixel hold the same share.
HWY_INLINE PixelVector scaledPixels(PixelVector pixels, hn::Vec<UnsignedWords> share) {
    const UnsignedWords du;
    const auto words = hn::BitCast(du, pixels);
    const auto even = scaled(hn::And(words, hn::Set(du, 0xFF)), share);
    const auto odd = scaled(hn::ShiftRight<8>(words), share);
    return hn::BitCast(Pixels(), hn::Or(even, hn::ShiftLeft<8>(odd)));
}

/// 255 − alpha in both words of each pixel.
HWY_INLINE hn::Vec<UnsignedWords> transparency(PixelVector alpha) {
    const UnsignedWords du;
    return hn::Sub(hn::Set(du, 255), hn::BitCast(du, hn::Or(alpha, hn::ShiftLeft<16>(alpha))));
}

void blendPremultipliedHere(const std::uint8_t* source, int count, std::uint8_t* out) {
    const Pixels d;
    std::array<std::uint8_t, HWY_MAX_BYTES> tail{};
    const int lanes = static_cast<int>(hn::Lanes(d));
    forEachVector(count, out, [&](int x, std::uint8_t* target) HWY_ATTR {
        const std::uint8_t* from = source + std::ptrdiff_t{x} * 4;
        if (x + lanes > count) {
            std::memcpy(tail.data(), from, static_cast<std::size_t>(count - x) * 4);
            from = tail.data();
        }
        const auto pixels = loadPixels(from);
        const auto under =
            scaledPixels(loadPixels(target), transparency(hn::ShiftRight<24>(pixels)));
        storePixels(hn::BitCast(d, hn::SaturatedAdd(hn::BitCast(Bytes(), pixels),
                                                    hn::BitCast(Bytes(), under))),
                    target);
    });
}

void darkenHere(const std::uint16_t* alpha, int count, std::uint8_t* out) {
    const Pixels d;
    const hn::Rebind<std::uint16_t, Pixels> narrow;
    const auto byte = hn::Set(d, 0xFF);
    std::array<std::uint16_t, HWY_MAX_BYTES / 2> tail{};
    const int lanes = static_cast<int>(hn::Lanes(d));
    const auto half = hn::Set(d, 32768);
    forEachVector(count, out, [&](int x, std::uint8_t* target) HWY_ATTR {
        const std::uint16_t* from = alpha + x;
        if (x + lanes > count) {
            std::memcpy(tail.data(), from, static_cast<std::size_t>(count - x) * 2);
            from = tail.data();
        }
        const auto share = hn::Sub(hn::Set(d, 65536), hn::PromoteTo(d, hn::LoadU(narrow, from)));
        const auto pixels = loadPixels(target);
        const auto darker = [&](hn::Vec<Pixels> channel) HWY_ATTR {
            return hn::ShiftRight<16>(hn::Add(hn::Mul(channel, share), half));
        };
        const auto blue = darker(hn::And(pixels, byte));
        const auto green = darker(hn::And(hn::ShiftRight<8>(pixels), byte));
        const auto red = darker(hn::And(hn::ShiftRight<16>(pixels), byte));
        storePixels(hn::Or(hn::Or(blue, hn::ShiftLeft<8>(green)),
                           hn::Or(hn::ShiftLeft<16>(red), hn::Set(d, 0xFF000000U))),
                    target);
    });
}

int blockPixelsHere() {
    return static_cast<int>(hn::Lanes(Pixels()));
}

const char* targetNameHere() {
    return hwy::TargetName(HWY_TARGET);
}

} // namespace
} // namespace vantro::render::software::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vantro::render::software {

HWY_EXPORT(filterColumnsHere);
HWY_EXPORT(mixRowsHere);
HWY_EXPORT(blendPremultipliedHere);
HWY_EXPORT(darkenHere);
HWY_EXPORT(blockPixelsHere);
HWY_EXPORT(targetNameHere);

int blockPixels() {
    return HWY_DYNAMIC_DISPATCH(blockPixelsHere)();
}

void filterColumns(const ColumnTaps& taps, const std::uint8_t* row, std::int16_t* out) {
    HWY_DYNAMIC_DISPATCH(filterColumnsHere)(taps, row, out);
}

void mixRows(const std::int16_t* upper, const std::int16_t* lower, std::int16_t weight, int count,
             std::uint8_t* out) {
    HWY_DYNAMIC_DISPATCH(mixRowsHere)(upper, lower, weight, count, out);
}

void blendPremultiplied(const std::uint8_t* source, int count, std::uint8_t* out) {
    HWY_DYNAMIC_DISPATCH(blendPremultipliedHere)(source, count, out);
}

void darken(const std::uint16_t* alpha, int count, std::uint8_t* out) {
    HWY_DYNAMIC_DISPATCH(darkenHere)(alpha, count, out);
}

std::string_view kernelTarget() {
    return HWY_DYNAMIC_DISPATCH(targetNameHere)();
}

} // namespace vantro::render::software
#endif
