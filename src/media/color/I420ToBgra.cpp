#include "base/Fatal.h"
#include "media/color/ColorConversion.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

// Highway compiles the part between its two markers once for each instruction set.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "media/color/I420ToBgra.cpp"
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

#ifndef VANTRO_I420_TO_BGRA_TYPES
#define VANTRO_I420_TO_BGRA_TYPES
namespace vantro::media::color {
namespace {

/// How samples become channels: factors as fractions of 2^13, since some are close to 2.2, and
/// offsets with 5 fractional bits, rounding included.
struct ChannelWeights {
    std::int16_t luma;
    std::int16_t vToRed;
    std::int16_t uToGreen;
    std::int16_t vToGreen;
    std::int16_t uToBlue;
    std::int16_t offset;
};

/// Pixels that one pass takes: few enough for its chroma to stay on the stack.
constexpr int chunkWidth = 256;

/// The chroma of one row and chunk, vertically interpolated (times 4). `u[1]` belongs to the
/// chunk's first pixel pair; one sample more stands on either side, and room for a whole vector
/// follows.
struct ChromaRow {
    static constexpr int capacity = chunkWidth / 2 + 2 + 64;
    std::array<std::int16_t, capacity> u;
    std::array<std::int16_t, capacity> v;
};

} // namespace
} // namespace vantro::media::color
#endif

HWY_BEFORE_NAMESPACE();
namespace vantro::media::color::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::Repartition<std::int16_t, Bytes>;
using UnsignedWords = hn::Repartition<std::uint16_t, Bytes>;
using WordVector = hn::Vec<Words>;

/// Chroma around its neutral 128, with 7 fractional bits.
HWY_INLINE WordVector centered(WordVector sixteenths) {
    return hn::ShiftLeft<3>(hn::Sub(sixteenths, hn::Set(Words(), 128 * 16)));
}

/// Three parts of the nearer and one of the farther sample.
HWY_INLINE WordVector interpolate(WordVector near, WordVector far) {
    return centered(hn::Add(hn::Add(near, far), hn::Add(near, near)));
}

struct Channels {
    WordVector blue;
    WordVector green;
    WordVector red;
};

HWY_INLINE WordVector toByteRange(WordVector value) {
    const Words d;
    return hn::Min(hn::Max(hn::ShiftRight<5>(value), hn::Zero(d)), hn::Set(d, 255));
}

HWY_INLINE Channels toChannels(WordVector luma, WordVector u, WordVector v,
                               const ChannelWeights& weights) {
    const Words d;
    const auto scale = [d](WordVector value, std::int16_t weight)
                           HWY_ATTR { return hn::MulFixedPoint15(value, hn::Set(d, weight)); };
    const auto base =
        hn::Add(scale(hn::ShiftLeft<7>(luma), weights.luma), hn::Set(d, weights.offset));
    return {
        toByteRange(hn::Add(base, scale(u, weights.uToBlue))),
        toByteRange(hn::Add(hn::Add(base, scale(u, weights.uToGreen)), scale(v, weights.vToGreen))),
        toByteRange(hn::Add(base, scale(v, weights.vToRed)))};
}

/// One vector of pixels; `u` and `v` point at the chroma sample of its first pair.
HWY_INLINE void convertVector(const std::uint8_t* y, const std::int16_t* u, const std::int16_t* v,
                              const ChannelWeights& weights, std::uint8_t* bgra) {
    const Bytes d8;
    const Words d;
    const UnsignedWords du;
    const auto luma = hn::BitCast(du, hn::LoadU(d8, y));
    const auto lumaEven = hn::BitCast(d, hn::And(luma, hn::Set(du, 0xFF)));
    const auto lumaOdd = hn::BitCast(d, hn::ShiftRight<8>(luma));
    const auto uHere = hn::LoadU(d, u);
    const auto vHere = hn::LoadU(d, v);
    const Channels even = toChannels(lumaEven, interpolate(uHere, hn::LoadU(d, u - 1)),
                                     interpolate(vHere, hn::LoadU(d, v - 1)), weights);
    const Channels odd = toChannels(lumaOdd, interpolate(uHere, hn::LoadU(d, u + 1)),
                                    interpolate(vHere, hn::LoadU(d, v + 1)), weights);
    const auto join = [d8](WordVector low, WordVector high)
                          HWY_ATTR { return hn::BitCast(d8, hn::Or(low, hn::ShiftLeft<8>(high))); };
    hn::StoreInterleaved4(join(even.blue, odd.blue), join(even.green, odd.green),
                          join(even.red, odd.red), hn::Set(d8, 255), d8, bgra);
}

/// `width` pixels of one row, of which the first has an even column; chroma as in ChromaRow.
/// Pixels below `skip` (0 or 1) are left out of the output.
void convertChunk(const std::uint8_t* y, const ChromaRow& chroma, int skip, int width,
                  const ChannelWeights& weights, std::uint8_t* bgra) {
    const int step = static_cast<int>(hn::Lanes(Bytes()));
    for (int x = 0; x < width; x += step) {
        const std::int16_t* u = chroma.u.data() + 1 + x / 2;
        const std::int16_t* v = chroma.v.data() + 1 + x / 2;
        const int first = x == 0 ? skip : 0;
        const int count = std::min(step, width - x);
        if (first == 0 && count == step) {
            convertVector(y + x, u, v, weights, bgra + std::ptrdiff_t{x - skip} * 4);
            continue;
        }
        std::array<std::uint8_t, HWY_MAX_BYTES> luma{};
        std::array<std::uint8_t, HWY_MAX_BYTES * 4> pixels;
        std::memcpy(luma.data(), y + x, static_cast<std::size_t>(count));
        convertVector(luma.data(), u, v, weights, pixels.data());
        std::memcpy(bgra + std::ptrdiff_t{x + first - skip} * 4,
                    pixels.data() + std::ptrdiff_t{first} * 4,
                    static_cast<std::size_t>(count - first) * 4);
    }
}

/// 3 × near + far for `count` samples.
void blendRows(const std::uint8_t* near, const std::uint8_t* far, int count, std::int16_t* out) {
    const Words d;
    const hn::Rebind<std::uint8_t, Words> half;
    const int step = static_cast<int>(hn::Lanes(d));
    int i = 0;
    for (; i + step <= count; i += step) {
        const auto nearer = hn::PromoteTo(d, hn::LoadU(half, near + i));
        const auto farther = hn::PromoteTo(d, hn::LoadU(half, far + i));
        hn::StoreU(hn::Add(hn::Add(nearer, farther), hn::Add(nearer, nearer)), d, out + i);
    }
    for (; i < count; ++i)
        out[i] = static_cast<std::int16_t>(3 * near[i] + far[i]);
}

} // namespace
} // namespace vantro::media::color::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vantro::media::color {

HWY_EXPORT(convertChunk);
HWY_EXPORT(blendRows);

namespace {

ChannelWeights weightsFor(ColorDescription color) {
    const double redShare = color.matrix == ColorMatrix::bt709 ? 0.2126 : 0.299;
    const double blueShare = color.matrix == ColorMatrix::bt709 ? 0.0722 : 0.114;
    const double greenShare = 1 - redShare - blueShare;
    const double lumaScale = color.fullRange ? 1.0 : 255.0 / 219.0;
    const double chromaScale = color.fullRange ? 1.0 : 255.0 / 224.0;
    const double black = color.fullRange ? 0.0 : 16.0;
    const double redPerV = 2 * (1 - redShare) * chromaScale;
    const double bluePerU = 2 * (1 - blueShare) * chromaScale;
    const auto factor = [](double value) {
        return static_cast<std::int16_t>(std::lround(value * 8192));
    };
    return {factor(lumaScale),
            factor(redPerV),
            factor(-bluePerU * blueShare / greenShare),
            factor(-redPerV * redShare / greenShare),
            factor(bluePerU),
            static_cast<std::int16_t>(std::lround((0.5 - black * lumaScale) * 32))};
}

/// Interpolates the chroma of picture row `y` for `count` samples from column `first`, and one more
/// on either side.
void fillChroma(const PixelBuffer& source, int plane, int y, int first, int count,
                std::array<std::int16_t, ChromaRow::capacity>& out) {
    const int columns = (source.width() + 1) / 2;
    const int rows = source.planeHeight(plane);
    const int near = y / 2;
    const int far = std::clamp(y % 2 == 0 ? near - 1 : near + 1, 0, rows - 1);
    const int begin = std::max(first - 1, 0);
    const int end = std::min(first + count + 1, columns);
    std::int16_t* start = out.data() + (begin - first + 1);
    HWY_DYNAMIC_DISPATCH(blendRows)
    (source.row(plane, near) + begin, source.row(plane, far) + begin, end - begin, start);
    if (begin == first)
        out[0] = out[1];
    if (end == columns)
        start[end - begin] = start[end - begin - 1];
}

} // namespace

void i420RegionToBgra(const PixelBuffer& source, PixelRect rect, std::uint8_t* destination,
                      std::ptrdiff_t stride) {
    base::require(source.format() == PixelFormat::i420 && rect.x >= 0 && rect.y >= 0 &&
                      rect.x + rect.width <= source.width() &&
                      rect.y + rect.height <= source.height(),
                  "region leaves the i420 picture");
    const ChannelWeights weights = weightsFor(source.color());
    const int right = rect.x + rect.width;
    ChromaRow chroma{}; // vectors read on past a narrow chunk's last sample
    for (int y = rect.y; y < rect.y + rect.height; ++y) {
        std::uint8_t* row = destination + (y - rect.y) * stride;
        for (int x = rect.x & ~1; x < right; x += chunkWidth) {
            const int width = std::min(chunkWidth, right - x);
            const int skip = std::max(rect.x - x, 0);
            fillChroma(source, 1, y, x / 2, (width + 1) / 2, chroma.u);
            fillChroma(source, 2, y, x / 2, (width + 1) / 2, chroma.v);
            HWY_DYNAMIC_DISPATCH(convertChunk)
            (source.row(0, y) + x, chroma, skip, width, weights,
             row + std::ptrdiff_t{x + skip - rect.x} * 4);
        }
    }
}

void convertI420ToBgra(const PixelBuffer& source, PixelBuffer& destination) {
    base::require(destination.format() == PixelFormat::bgra &&
                      source.width() == destination.width() &&
                      source.height() == destination.height(),
                  "i420 and bgra picture of different sizes");
    i420RegionToBgra(source, {0, 0, source.width(), source.height()}, destination.mutableRow(0, 0),
                     destination.stride(0));
}

} // namespace vantro::media::color
#endif
