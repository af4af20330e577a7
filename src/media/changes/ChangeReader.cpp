#include "media/changes/ChangeReader.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace vantro::media::changes {
namespace {

constexpr int stepsPerSecond = 6;
// Steps before a watch, in which the part has to be calm: hovering already changes what lies there.
constexpr int stepsBefore = 2;
// Steps that a watch and the next one may share: what comes before, and a program's late answer.
constexpr std::size_t mostKept = 6;
constexpr int sampleDistance = 3;   // pixels
constexpr int leastDifference = 14; // of the brightness, out of 255: compression stays below
constexpr double leastShare = 0.01; // of the part: more than a caret or the pointer's own picture
constexpr double timesCalm = 3;     // as much as just before

struct Span {
    int first = 0;
    int end = 0;
};

Span pixels(double start, double length, int all) {
    const auto limited = [all](double place) {
        return std::clamp(static_cast<int>(std::lround(place * all)), 0, all);
    };
    return {limited(start), limited(start + length)};
}

} // namespace

double changedShare(const PixelBuffer& before, const PixelBuffer& after, const model::Rect& part) {
    // The first plane is the brightness, or has it best in green, its second byte.
    const bool isBgra = after.format() == PixelFormat::bgra;
    const int pixelBytes = isBgra ? 4 : 1;
    const int offset = isBgra ? 1 : 0;
    const auto columns = pixels(part.x, part.width, after.width());
    const auto rows = pixels(part.y, part.height, after.height());
    std::int64_t all = 0;
    std::int64_t changed = 0;
    for (int y = rows.first; y < rows.end; y += sampleDistance) {
        const auto* one = before.row(0, y);
        const auto* other = after.row(0, y);
        for (int x = columns.first; x < columns.end; x += sampleDistance) {
            const int place = x * pixelBytes + offset;
            ++all;
            changed += std::abs(one[place] - other[place]) >= leastDifference ? 1 : 0;
        }
    }
    return all == 0 ? 0 : static_cast<double>(changed) / static_cast<double>(all);
}

ChangeReader::ChangeReader(const Asset& asset, const AssetTrack& track)
    : m_source(asset, track.id) {
    m_source.setKeptBytes(0);
}

std::expected<ChangeReader::Pixels, NoFrame> ChangeReader::pictureAt(std::int64_t step,
                                                                     const std::stop_token& stop) {
    if (const auto known = m_latest.find(step); known != m_latest.end())
        return known->second;
    const auto found = m_source.frameAt({step, stepsPerSecond}, stop);
    if (!found)
        return std::unexpected(found.error());
    m_latest.emplace(step, found->pixels);
    while (m_latest.size() > mostKept)
        m_latest.erase(m_latest.begin());
    return found->pixels;
}

std::expected<std::optional<double>, NoFrame>
ChangeReader::firstChange(const Watch& watch, const std::stop_token& stop) {
    const auto first = static_cast<std::int64_t>(std::floor(watch.from * stepsPerSecond));
    const auto last = static_cast<std::int64_t>(std::ceil(watch.until * stepsPerSecond));
    std::shared_ptr<const PixelBuffer> before;
    double calm = 0;
    for (auto step = std::max<std::int64_t>(first - stepsBefore, 0); step <= last; ++step) {
        const auto picture = pictureAt(step, stop);
        if (!picture)
            return std::unexpected(picture.error());
        const auto& now = *picture;
        const bool isComparable = before && before != now && before->width() == now->width() &&
                                  before->height() == now->height() &&
                                  before->format() == now->format();
        const double share = isComparable ? changedShare(*before, *now, watch.part) : 0;
        if (step <= first)
            calm = std::max(calm, share);
        else if (share >= std::max(leastShare, calm * timesCalm))
            return std::max(static_cast<double>(step - 1) / stepsPerSecond, watch.from);
        before = now;
    }
    return std::nullopt;
}

} // namespace vantro::media::changes
