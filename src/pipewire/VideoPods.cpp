#include "pipewire/VideoPods.h"

#include "base/Fatal.h"

#include <algorithm>
#include <span>

#include <spa/buffer/buffer.h>
#include <spa/param/buffers.h>
#include <spa/param/format-utils.h>
#include <spa/param/param.h>
#include <spa/param/video/format-utils.h>
#include <spa/pod/builder.h>
#include <spa/pod/iter.h>
#include <spa/utils/type.h>

namespace vantro::pipewire {
namespace {

constexpr std::array<std::pair<Layout, std::uint32_t>, 18> rawLayouts{{
    {Layout::bgrx, SPA_VIDEO_FORMAT_BGRx},
    {Layout::bgra, SPA_VIDEO_FORMAT_BGRA},
    {Layout::rgbx, SPA_VIDEO_FORMAT_RGBx},
    {Layout::rgba, SPA_VIDEO_FORMAT_RGBA},
    {Layout::xrgb, SPA_VIDEO_FORMAT_xRGB},
    {Layout::xbgr, SPA_VIDEO_FORMAT_xBGR},
    {Layout::argb, SPA_VIDEO_FORMAT_ARGB},
    {Layout::abgr, SPA_VIDEO_FORMAT_ABGR},
    {Layout::rgb, SPA_VIDEO_FORMAT_RGB},
    {Layout::bgr, SPA_VIDEO_FORMAT_BGR},
    {Layout::gray, SPA_VIDEO_FORMAT_GRAY8},
    {Layout::yuyv, SPA_VIDEO_FORMAT_YUY2},
    {Layout::uyvy, SPA_VIDEO_FORMAT_UYVY},
    {Layout::yvyu, SPA_VIDEO_FORMAT_YVYU},
    {Layout::i420, SPA_VIDEO_FORMAT_I420},
    {Layout::yv12, SPA_VIDEO_FORMAT_YV12},
    {Layout::nv12, SPA_VIDEO_FORMAT_NV12},
    {Layout::nv21, SPA_VIDEO_FORMAT_NV21},
}};

std::uint32_t spaFormat(Layout layout) {
    const auto found = std::ranges::find(rawLayouts, layout, [](auto& each) { return each.first; });
    base::require(found != rawLayouts.end(), "a layout that is not raw");
    return found->second;
}

std::optional<Layout> layoutOf(std::uint32_t format) {
    const auto found =
        std::ranges::find(rawLayouts, format, [](auto& each) { return each.second; });
    return found == rawLayouts.end() ? std::nullopt : std::optional(found->first);
}

spa_rectangle spaValue(Size size) {
    return {static_cast<std::uint32_t>(size.width), static_cast<std::uint32_t>(size.height)};
}
spa_fraction spaValue(Rate rate) {
    return {rate.numerator, rate.denominator};
}
void add(spa_pod_builder& builder, spa_rectangle value) {
    spa_pod_builder_rectangle(&builder, value.width, value.height);
}
void add(spa_pod_builder& builder, spa_fraction value) {
    spa_pod_builder_fraction(&builder, value.num, value.denom);
}
void add(spa_pod_builder& builder, std::int32_t value) {
    spa_pod_builder_int(&builder, value);
}
std::int32_t spaValue(std::int32_t value) {
    return value;
}

/// One message being put together.
class Writer {
  public:
    Writer(std::uint32_t type, std::uint32_t id) {
        spa_pod_builder_init(&m_builder, m_pod.bytes.data(), m_pod.bytes.size());
        spa_pod_builder_push_object(&m_builder, &m_object, type, id);
    }

    void addId(std::uint32_t key, std::uint32_t value) {
        spa_pod_builder_prop(&m_builder, key, 0);
        spa_pod_builder_id(&m_builder, value);
    }
    void addInt(std::uint32_t key, std::int32_t value) {
        spa_pod_builder_prop(&m_builder, key, 0);
        spa_pod_builder_int(&m_builder, value);
    }
    void addFlags(std::uint32_t key, std::int32_t flags) {
        choose(key, SPA_CHOICE_Flags, [&] { spa_pod_builder_int(&m_builder, flags); });
    }
    void addLayouts(std::uint32_t key, std::span<const Layout> layouts) {
        choose(key, SPA_CHOICE_Enum, [&] {
            spa_pod_builder_id(&m_builder, spaFormat(layouts.front())); // the preferred one
            for (const Layout each : layouts)
                spa_pod_builder_id(&m_builder, spaFormat(each));
        });
    }
    template <typename Value>
    void addRange(std::uint32_t key, const Range<Value>& range) {
        if (range.isFixed()) {
            spa_pod_builder_prop(&m_builder, key, 0);
            add(m_builder, spaValue(range.usual));
            return;
        }
        choose(key, SPA_CHOICE_Range, [&] {
            for (const Value& each : {range.usual, range.least, range.most})
                add(m_builder, spaValue(each));
        });
    }

    Pod finish() {
        base::require(spa_pod_builder_pop(&m_builder, &m_object) != nullptr,
                      "a message to PipeWire is too long");
        return m_pod;
    }

  private:
    template <typename Values>
    void choose(std::uint32_t key, std::uint32_t kind, Values&& addValues) {
        spa_pod_builder_prop(&m_builder, key, 0);
        spa_pod_frame frame{};
        spa_pod_builder_push_choice(&m_builder, &frame, kind, 0);
        addValues();
        spa_pod_builder_pop(&m_builder, &frame);
    }

    Pod m_pod;
    spa_pod_builder m_builder{};
    spa_pod_frame m_object{};
};

bool isUsable(Size size) {
    constexpr int most = 16'384;
    return size.width > 0 && size.height > 0 && size.width <= most && size.height <= most;
}
Size ownValue(const spa_rectangle& value) {
    return {static_cast<int>(value.width), static_cast<int>(value.height)};
}
Rate ownValue(const spa_fraction& value) {
    return {value.num, value.denom};
}
std::uint32_t ownValue(std::uint32_t value) {
    return value;
}

/// What stands under a key, by its alternatives; nothing where it is of another type.
template <typename Own, typename Spa>
std::vector<Range<Own>> readRanges(const spa_pod& pod, std::uint32_t key, std::uint32_t type) {
    std::vector<Range<Own>> ranges;
    const auto* property = spa_pod_find_prop(&pod, nullptr, key);
    if (!property)
        return ranges;
    std::uint32_t count = 0;
    std::uint32_t choice = SPA_CHOICE_None;
    const auto* values = spa_pod_get_values(&property->value, &count, &choice);
    if (count == 0 || SPA_POD_TYPE(values) != type || SPA_POD_BODY_SIZE(values) < sizeof(Spa))
        return ranges;
    const std::span all(static_cast<const Spa*>(SPA_POD_BODY_CONST(values)), count);
    const auto add = [&](const Spa& value) {
        const Range<Own> fixed{ownValue(value)};
        if (std::ranges::find(ranges, fixed) == ranges.end())
            ranges.push_back(fixed);
    };
    if ((choice == SPA_CHOICE_Range || choice == SPA_CHOICE_Step) && count >= 3)
        ranges.push_back({ownValue(all[0]), ownValue(all[1]), ownValue(all[2])});
    else if (choice == SPA_CHOICE_Enum)
        std::ranges::for_each(all, add); // the preferred one comes twice
    else
        add(all[0]);
    return ranges;
}

std::vector<Layout> readLayouts(const spa_pod& pod) {
    std::uint32_t type = 0;
    std::uint32_t subtype = 0;
    std::vector<Layout> layouts;
    if (spa_format_parse(&pod, &type, &subtype) < 0 || type != SPA_MEDIA_TYPE_video)
        return layouts;
    if (subtype == SPA_MEDIA_SUBTYPE_mjpg)
        return {Layout::mjpeg};
    if (subtype != SPA_MEDIA_SUBTYPE_raw)
        return layouts;
    for (const auto& each :
         readRanges<std::uint32_t, std::uint32_t>(pod, SPA_FORMAT_VIDEO_format, SPA_TYPE_Id))
        if (const auto layout = layoutOf(each.usual))
            layouts.push_back(*layout);
    return layouts;
}

} // namespace

Pod writeOffer(const FormatOffer& offer) {
    base::require(!offer.layouts.empty(), "an offer of nothing");
    const bool isRaw = offer.layouts.front() != Layout::mjpeg;
    Writer writer(SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat);
    writer.addId(SPA_FORMAT_mediaType, SPA_MEDIA_TYPE_video);
    writer.addId(SPA_FORMAT_mediaSubtype, isRaw ? SPA_MEDIA_SUBTYPE_raw : SPA_MEDIA_SUBTYPE_mjpg);
    if (isRaw)
        writer.addLayouts(SPA_FORMAT_VIDEO_format, offer.layouts);
    writer.addRange(SPA_FORMAT_VIDEO_size, offer.size);
    writer.addRange(SPA_FORMAT_VIDEO_framerate, offer.rate);
    if (offer.highestRate)
        writer.addRange(SPA_FORMAT_VIDEO_maxFramerate, *offer.highestRate);
    return writer.finish();
}

std::vector<FormatOffer> readOffers(const spa_pod& pod) {
    std::vector<FormatOffer> offers;
    const auto layouts = readLayouts(pod);
    if (layouts.empty())
        return offers;
    const auto rates =
        readRanges<Rate, spa_fraction>(pod, SPA_FORMAT_VIDEO_framerate, SPA_TYPE_Fraction);
    for (const auto& size :
         readRanges<Size, spa_rectangle>(pod, SPA_FORMAT_VIDEO_size, SPA_TYPE_Rectangle)) {
        if (!isUsable(size.most))
            continue;
        for (const auto& rate : rates)
            offers.push_back(
                {.layouts = layouts, .size = size, .rate = rate, .highestRate = std::nullopt});
    }
    return offers;
}

std::optional<VideoFormat> readFormat(const spa_pod& pod) {
    const auto layouts = readLayouts(pod);
    const auto first = [&]<typename Own, typename Spa>(Own, Spa, std::uint32_t key,
                                                       std::uint32_t type) {
        const auto ranges = readRanges<Own, Spa>(pod, key, type);
        return ranges.empty() ? Own{} : ranges.front().usual;
    };
    const auto size = first(Size{}, spa_rectangle{}, SPA_FORMAT_VIDEO_size, SPA_TYPE_Rectangle);
    if (layouts.empty() || !isUsable(size))
        return {};
    return VideoFormat{
        .layout = layouts.front(),
        .size = size,
        .rate = first(Rate{}, spa_fraction{}, SPA_FORMAT_VIDEO_framerate, SPA_TYPE_Fraction),
        .highestRate =
            first(Rate{}, spa_fraction{}, SPA_FORMAT_VIDEO_maxFramerate, SPA_TYPE_Fraction)};
}

Pod writeBuffers() {
    constexpr Range<std::int32_t> count{4, 2, 16};
    Writer writer(SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers);
    writer.addRange(SPA_PARAM_BUFFERS_buffers, count);
    writer.addFlags(SPA_PARAM_BUFFERS_dataType, (1 << SPA_DATA_MemPtr) | (1 << SPA_DATA_MemFd));
    return writer.finish();
}

Pod writeMeta(std::uint32_t kind, std::int32_t usual, std::int32_t least, std::int32_t most) {
    Writer writer(SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta);
    writer.addId(SPA_PARAM_META_type, kind);
    writer.addRange(SPA_PARAM_META_size, Range<std::int32_t>{usual, least, most});
    return writer.finish();
}

} // namespace vantro::pipewire
