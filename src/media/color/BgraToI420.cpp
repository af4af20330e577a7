#include "base/Fatal.h"
#include "media/color/ColorConversion.h"

#include <array>
#include <cstring>

// Highway compiles the part between its two markers once for each instruction set.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "media/color/BgraToI420.cpp"
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace vantro::media::color::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::Repartition<std::int16_t, Bytes>;
using UnsignedWords = hn::Repartition<std::uint16_t, Bytes>;
using WordVector = hn::Vec<Words>;

constexpr std::int16_t fixedPoint15(double value) {
    return static_cast<std::int16_t>(value * 32768 + (value < 0 ? -0.5 : 0.5));
}

/// The share of each channel in one output sample, as fractions of 2^15.
struct Weights {
    std::int16_t red;
    std::int16_t green;
    std::int16_t blue;
};

constexpr double redShare = 0.2126;
constexpr double greenShare = 0.7152;
constexpr double blueShare = 0.0722;
constexpr double lumaRange = 219.0 / 255.0;
constexpr double uRange = 224.0 / 255.0 / (2 * (1 - blueShare));
constexpr double vRange = 224.0 / 255.0 / (2 * (1 - redShare));

constexpr Weights lumaWeights{fixedPoint15(redShare * lumaRange),
                              fixedPoint15(greenShare* lumaRange),
                              fixedPoint15(blueShare* lumaRange)};
constexpr Weights uWeights{fixedPoint15(-redShare * uRange), fixedPoint15(-greenShare* uRange),
                           fixedPoint15((1 - blueShare) * uRange)};
constexpr Weights vWeights{fixedPoint15((1 - redShare) * vRange), fixedPoint15(-greenShare* vRange),
                           fixedPoint15(-blueShare* vRange)};

// Samples are carried as multiples of 1/128: the finest step at which 255 fits a signed word.
constexpr int fractionBits = 7;

/// The even pixels of a stretch and, in the same lanes, the odd ones: this order needs no shuffling
/// to sum neighbors for chroma, nor to put luma back in sequence.
struct Channel {
    WordVector even;
    WordVector odd;
};

struct Pixels {
    Channel blue;
    Channel green;
    Channel red;
};

HWY_INLINE Channel split(hn::Vec<Bytes> bytes) {
    const UnsignedWords du;
    const Words d;
    const auto words = hn::BitCast(du, bytes);
    return {hn::BitCast(d, hn::And(words, hn::Set(du, 0xFF))),
            hn::BitCast(d, hn::ShiftRight<8>(words))};
}

HWY_INLINE Pixels loadPixels(const std::uint8_t* bgra) {
    const Bytes d;
    hn::Vec<Bytes> blue;
    hn::Vec<Bytes> green;
    hn::Vec<Bytes> red;
    hn::Vec<Bytes> alpha;
    hn::LoadInterleaved4(d, bgra, blue, green, red, alpha);
    return {split(blue), split(green), split(red)};
}

/// The weighted sum of three words with 7 fractional bits, plus `offset`, rounded to a whole
/// sample.
HWY_INLINE WordVector weigh(WordVector red, WordVector green, WordVector blue, Weights weights,
                            int offset) {
    const Words d;
    const auto rounded = static_cast<std::int16_t>((offset << fractionBits) + 64);
    const auto sum =
        hn::Add(hn::Add(hn::MulFixedPoint15(red, hn::Set(d, weights.red)),
                        hn::MulFixedPoint15(green, hn::Set(d, weights.green))),
                hn::Add(hn::MulFixedPoint15(blue, hn::Set(d, weights.blue)), hn::Set(d, rounded)));
    return hn::ShiftRight<fractionBits>(sum);
}

HWY_INLINE WordVector luma(WordVector red, WordVector green, WordVector blue) {
    return weigh(hn::ShiftLeft<fractionBits>(red), hn::ShiftLeft<fractionBits>(green),
                 hn::ShiftLeft<fractionBits>(blue), lumaWeights, 16);
}

HWY_INLINE void storeLuma(const Pixels& pixels, std::uint8_t* y) {
    const auto even = luma(pixels.red.even, pixels.green.even, pixels.blue.even);
    const auto odd = luma(pixels.red.odd, pixels.green.odd, pixels.blue.odd);
    const Bytes d;
    hn::StoreU(hn::BitCast(d, hn::Or(even, hn::ShiftLeft<8>(odd))), d, y);
}

/// The mean of a 2×2 block, with 7 fractional bits.
HWY_INLINE WordVector blockMean(const Channel& upper, const Channel& lower) {
    const auto sum = hn::Add(hn::Add(upper.even, upper.odd), hn::Add(lower.even, lower.odd));
    return hn::ShiftLeft<fractionBits - 2>(sum);
}

HWY_INLINE void storeChroma(const Pixels& upper, const Pixels& lower, std::uint8_t* u,
                            std::uint8_t* v) {
    const auto red = blockMean(upper.red, lower.red);
    const auto green = blockMean(upper.green, lower.green);
    const auto blue = blockMean(upper.blue, lower.blue);
    const hn::Rebind<std::uint8_t, Words> half;
    hn::StoreU(hn::DemoteTo(half, weigh(red, green, blue, uWeights, 128)), half, u);
    hn::StoreU(hn::DemoteTo(half, weigh(red, green, blue, vWeights, 128)), half, v);
}

HWY_INLINE void convertVector(const std::uint8_t* row0, const std::uint8_t* row1, std::uint8_t* y0,
                              std::uint8_t* y1, std::uint8_t* u, std::uint8_t* v) {
    const Pixels upper = loadPixels(row0);
    const Pixels lower = loadPixels(row1);
    storeLuma(upper, y0);
    storeLuma(lower, y1);
    storeChroma(upper, lower, u, v);
}

/// A stretch narrower than a vector, by way of memory that a whole vector fits into.
void convertRest(const std::uint8_t* row0, const std::uint8_t* row1, int width, std::uint8_t* y0,
                 std::uint8_t* y1, std::uint8_t* u, std::uint8_t* v) {
    constexpr std::size_t widest = HWY_MAX_BYTES;
    std::array<std::uint8_t, widest * 4> upper{};
    std::array<std::uint8_t, widest * 4> lower{};
    std::array<std::uint8_t, widest> lumaOut0;
    std::array<std::uint8_t, widest> lumaOut1;
    std::array<std::uint8_t, widest / 2> uOut;
    std::array<std::uint8_t, widest / 2> vOut;
    const auto pixels = static_cast<std::size_t>(width);
    const auto copyPadded = [pixels](const std::uint8_t* from, std::uint8_t* to) {
        std::memcpy(to, from, pixels * 4);
        std::memcpy(to + pixels * 4, from + (pixels - 1) * 4, 4); // a lone column counts twice
    };
    copyPadded(row0, upper.data());
    copyPadded(row1, lower.data());
    convertVector(upper.data(), lower.data(), lumaOut0.data(), lumaOut1.data(), uOut.data(),
                  vOut.data());
    std::memcpy(y0, lumaOut0.data(), pixels);
    std::memcpy(y1, lumaOut1.data(), pixels);
    std::memcpy(u, uOut.data(), (pixels + 1) / 2);
    std::memcpy(v, vOut.data(), (pixels + 1) / 2);
}

void convertRows(const std::uint8_t* row0, const std::uint8_t* row1, int width, std::uint8_t* y0,
                 std::uint8_t* y1, std::uint8_t* u, std::uint8_t* v) {
    const int step = static_cast<int>(hn::Lanes(Bytes()));
    int x = 0;
    for (; x + step <= width; x += step)
        convertVector(row0 + std::ptrdiff_t{x} * 4, row1 + std::ptrdiff_t{x} * 4, y0 + x, y1 + x,
                      u + x / 2, v + x / 2);
    if (x < width)
        convertRest(row0 + std::ptrdiff_t{x} * 4, row1 + std::ptrdiff_t{x} * 4, width - x, y0 + x,
                    y1 + x, u + x / 2, v + x / 2);
}

} // namespace
} // namespace vantro::media::color::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vantro::media::color {

HWY_EXPORT(convertRows);

void bgraRowsToI420(const std::uint8_t* row0, const std::uint8_t* row1, int width, std::uint8_t* y0,
                    std::uint8_t* y1, std::uint8_t* u, std::uint8_t* v) {
    HWY_DYNAMIC_DISPATCH(convertRows)(row0, row1, width, y0, y1, u, v);
}

void convertBgraRectToI420(const std::uint8_t* bgra, std::ptrdiff_t stride, PixelRect rect,
                           PixelBuffer& destination) {
    base::require(destination.format() == PixelFormat::i420 &&
                      destination.color() == ColorDescription{},
                  "bgra becomes BT.709 limited range i420 only");
    const int right = rect.x + rect.width;
    const int bottom = rect.y + rect.height;
    base::require(rect.x >= 0 && rect.y >= 0 && rect.width >= 0 && rect.height >= 0 &&
                      right <= destination.width() && bottom <= destination.height() &&
                      rect.x % 2 == 0 && rect.y % 2 == 0 &&
                      (right % 2 == 0 || right == destination.width()) &&
                      (bottom % 2 == 0 || bottom == destination.height()),
                  "rectangle cuts through chroma blocks or leaves the picture");
    for (int y = rect.y; y < bottom && rect.width > 0; y += 2) {
        const int next = y + 1 < bottom ? y + 1 : y;
        bgraRowsToI420(bgra + (y - rect.y) * stride, bgra + (next - rect.y) * stride, rect.width,
                       destination.mutableRow(0, y) + rect.x,
                       destination.mutableRow(0, next) + rect.x,
                       destination.mutableRow(1, y / 2) + rect.x / 2,
                       destination.mutableRow(2, y / 2) + rect.x / 2);
    }
}

void convertBgraToI420(const PixelBuffer& source, PixelBuffer& destination) {
    base::require(source.format() == PixelFormat::bgra && source.width() == destination.width() &&
                      source.height() == destination.height(),
                  "bgra and i420 picture of different sizes");
    convertBgraRectToI420(source.plane(0), source.stride(0),
                          {0, 0, source.width(), source.height()}, destination);
}

} // namespace vantro::media::color
#endif
