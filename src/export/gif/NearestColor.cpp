#include "export/gif/NearestColor.h"

// Highway compiles the part between its two markers once for each instruction set.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "export/gif/NearestColor.cpp"
#include <hwy/foreach_target.h> // must come before highway.h
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace vantro::exporting::gif::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

/// |p - c|² - |c|² = |p|² - 2 p·c: all terms are integers below 2^24, hence exact.
int findNearest(const NearestColor::Table& table, Color color) {
    const hn::ScalableTag<float> d;
    const hn::RebindToSigned<decltype(d)> di;
    const auto r = hn::Set(d, static_cast<float>(-2 * redWeight * red(color)));
    const auto g = hn::Set(d, static_cast<float>(-2 * greenWeight * green(color)));
    const auto b = hn::Set(d, static_cast<float>(-2 * blueWeight * blue(color)));
    auto best = hn::Set(d, 1e30F);
    auto bestAt = hn::Zero(di);
    for (std::size_t i = 0; i < table.red.size(); i += hn::Lanes(d)) {
        auto score = hn::MulAdd(hn::Load(d, &table.red[i]), r, hn::Load(d, &table.squares[i]));
        score = hn::MulAdd(hn::Load(d, &table.green[i]), g, score);
        score = hn::MulAdd(hn::Load(d, &table.blue[i]), b, score);
        const auto better = hn::Lt(score, best);
        best = hn::Min(score, best);
        bestAt =
            hn::IfThenElse(hn::RebindMask(di, better), hn::Set(di, static_cast<int>(i)), bestAt);
    }
    const auto least = hn::MinOfLanes(d, best);
    const auto index = hn::Add(bestAt, hn::Iota(di, 0));
    const auto found = hn::RebindMask(di, hn::Eq(best, least));
    return hn::GetLane(hn::MinOfLanes(di, hn::IfThenElse(found, index, hn::Set(di, 255))));
}

} // namespace
} // namespace vantro::exporting::gif::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vantro::exporting::gif {
namespace {
HWY_EXPORT(findNearest);
} // namespace

NearestColor::NearestColor(std::span<const Color> palette) {
    m_table.squares.fill(1e9F);
    for (std::size_t i = 0; i < palette.size(); ++i) {
        const auto color = palette[i];
        m_table.red[i] = static_cast<float>(red(color));
        m_table.green[i] = static_cast<float>(green(color));
        m_table.blue[i] = static_cast<float>(blue(color));
        m_table.squares[i] = static_cast<float>(distance(color, 0));
    }
}

int NearestColor::find(Color color) const {
    return HWY_DYNAMIC_DISPATCH(findNearest)(m_table, color);
}

} // namespace vantro::exporting::gif
#endif
