#include "capture/camera/PipeWireFormats.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vantro::capture::camera {
namespace {

using pipewire::Layout;

constexpr std::array rawLayouts{
    Layout::i420, Layout::nv12, Layout::yuyv, Layout::uyvy, Layout::yvyu, Layout::yv12,
    Layout::nv21, Layout::gray, Layout::bgrx, Layout::bgra, Layout::rgbx, Layout::rgba,
    Layout::xrgb, Layout::argb, Layout::xbgr, Layout::abgr, Layout::rgb,  Layout::bgr};

pipewire::Rate exactRate(double rate, const pipewire::Range<pipewire::Rate>& range) {
    for (const auto& each : {range.usual, range.least, range.most})
        if (std::abs(each.perSecond() - rate) < 1e-6)
            return each;
    return {static_cast<std::uint32_t>(std::lround(rate)), 1};
}

struct Candidate {
    pipewire::Range<pipewire::Rate> rate;
    CameraFormat format;
};

std::vector<Candidate> candidatesOf(const std::vector<pipewire::FormatOffer>& offered) {
    std::vector<Candidate> candidates;
    for (const auto& each : offered)
        for (const Layout layout : each.layouts)
            candidates.push_back({each.rate,
                                  {.layout = layout,
                                   .width = each.size.least.width,
                                   .height = each.size.least.height,
                                   .mostWidth = each.size.most.width,
                                   .mostHeight = each.size.most.height,
                                   .rate = each.rate.least.perSecond(),
                                   .highestRate = each.rate.most.perSecond()}});
    return candidates;
}

} // namespace

std::vector<pipewire::FormatOffer>
wantedFormats(const std::vector<pipewire::FormatOffer>& offered) {
    const pipewire::Range<pipewire::Size> anySize{{640, 480}, {1, 1}, {8192, 8192}};
    const pipewire::Range<pipewire::Rate> anyRate{{30, 1}, {0, 1}, {240, 1}};
    std::vector<pipewire::FormatOffer> wanted;
    // Size and rate must be fixed: from ranges a camera takes its own first ones.
    const auto candidates = candidatesOf(offered);
    std::vector<CameraFormat> formats;
    formats.reserve(candidates.size());
    for (const auto& each : candidates)
        formats.push_back(each.format);
    if (const auto best = chooseFormat(formats)) {
        const auto isIt = [&](const Candidate& each) {
            return chooseFormat(std::span(&each.format, 1)) == best;
        };
        const auto& chosen = *std::ranges::find_if(candidates, isIt);
        wanted.push_back({.layouts = {chosen.format.layout},
                          .size = {{best->width, best->height}},
                          .rate = {exactRate(best->rate, chosen.rate)},
                          .highestRate = std::nullopt});
    }
    for (const std::vector<Layout>& each :
         {std::vector(rawLayouts.begin(), rawLayouts.end()), {Layout::mjpeg}})
        wanted.push_back(
            {.layouts = each, .size = anySize, .rate = anyRate, .highestRate = std::nullopt});
    return wanted;
}

media::RawPicture rawPicture(const pipewire::VideoBuffer& buffer) {
    media::RawPicture raw{.layout = buffer.format.layout,
                          .width = buffer.format.size.width,
                          .height = buffer.format.size.height,
                          .planes = {}};
    for (std::size_t i = 0; i < std::min(raw.planes.size(), buffer.planes.size()); ++i)
        raw.planes.at(i) = {.bytes = buffer.planes[i].bytes, .stride = buffer.planes[i].stride};
    return raw;
}

} // namespace vantro::capture::camera
