#include "media/color/AveragingKernels.h"

#include <array>
#include <cstddef>
#include <cstring>

// Highway compiles the part between its two markers once for each instruction set.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "media/color/AveragingKernels.cpp"
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace vantro::media::color::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

using Samples = hn::CappedTag<float, sumOverrun>;

template <bool isFirst>
void sumRowAs(const std::uint8_t* row, float weight, int count, float* sums) {
    const Samples d;
    const hn::Rebind<std::int32_t, Samples> whole;
    const hn::Rebind<std::uint8_t, Samples> bytes;
    const auto share = hn::Set(d, weight);
    const int lanes = static_cast<int>(hn::Lanes(d));
    std::array<std::uint8_t, sumOverrun> last{};
    for (int i = 0; i < count; i += lanes) {
        const std::uint8_t* from = row + i;
        if (i + lanes > count) {
            std::memcpy(last.data(), from, static_cast<std::size_t>(count - i));
            from = last.data();
        }
        const auto values = hn::ConvertTo(d, hn::PromoteTo(whole, hn::LoadU(bytes, from)));
        // Multiplied and added in two steps, since not every processor can do both in one.
        const auto part = hn::Mul(values, share);
        hn::StoreU(isFirst ? part : hn::Add(hn::LoadU(d, sums + i), part), d, sums + i);
    }
}

void sumRowHere(const std::uint8_t* row, float weight, bool isFirst, int count, float* sums) {
    if (isFirst)
        sumRowAs<true>(row, weight, count, sums);
    else
        sumRowAs<false>(row, weight, count, sums);
}

void mixColumnsHere(const ColumnWeights& columns, const float* sums, int count, std::uint8_t* out) {
    const hn::FixedTag<float, 4> pixel;
    const hn::FixedTag<std::int32_t, 4> whole;
    const hn::FixedTag<std::uint8_t, 4> bytes;
    const auto half = hn::Set(pixel, 0.5F);
    const float* weight = columns.weights;
    for (int x = 0; x < count; ++x) {
        const float* from = sums + std::ptrdiff_t{columns.first[x]} * 4;
        auto mixed = half;
        for (int tap = 0; tap < columns.taps; ++tap, from += 4)
            mixed = hn::Add(mixed, hn::Mul(hn::LoadU(pixel, from), hn::Set(pixel, *weight++)));
        hn::StoreU(hn::DemoteTo(bytes, hn::ConvertTo(whole, mixed)), bytes,
                   out + std::ptrdiff_t{x} * 4);
    }
}

} // namespace
} // namespace vantro::media::color::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vantro::media::color {

HWY_EXPORT(sumRowHere);
HWY_EXPORT(mixColumnsHere);

void sumRow(const std::uint8_t* row, float weight, bool isFirst, int count, float* sums) {
    HWY_DYNAMIC_DISPATCH(sumRowHere)(row, weight, isFirst, count, sums);
}

void mixColumns(const ColumnWeights& columns, const float* sums, int count, std::uint8_t* out) {
    HWY_DYNAMIC_DISPATCH(mixColumnsHere)(columns, sums, count, out);
}

} // namespace vantro::media::color
#endif
