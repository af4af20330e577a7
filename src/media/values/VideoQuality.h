#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace vantro::media {

/// What matters most about a film that is no live recording. Hardware encoders cost next to
/// nothing and know no difference between the first two.
enum class VideoQuality {
    fast,     ///< done soonest at the stated rate
    balanced, ///< somewhat better pictures at the same rate
    small,    ///< about as good as fast where that takes fewer bytes; takes longest
};

inline constexpr std::array allVideoQualities{VideoQuality::fast, VideoQuality::balanced,
                                              VideoQuality::small};

/// For the command line: "fast", "balanced", "small".
constexpr std::string_view optionName(VideoQuality quality) {
    constexpr std::array<std::string_view, allVideoQualities.size()> names{"fast", "balanced",
                                                                           "small"};
    return names[static_cast<std::size_t>(quality)];
}

constexpr std::optional<VideoQuality> videoQualityFrom(std::string_view name) {
    for (const auto quality : allVideoQualities)
        if (optionName(quality) == name)
            return quality;
    return {};
}

} // namespace vantro::media
