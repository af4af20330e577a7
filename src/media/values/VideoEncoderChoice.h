#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace vantro::media {

/// What encodes a movie's pictures: `automatic` is the best that works on this machine.
enum class VideoEncoderChoice { automatic, libx264, nvenc, qsv, vaapi };

inline constexpr std::array allVideoEncoderChoices{
    VideoEncoderChoice::automatic, VideoEncoderChoice::libx264, VideoEncoderChoice::nvenc,
    VideoEncoderChoice::qsv, VideoEncoderChoice::vaapi};

/// For the command line and logs: "auto", "libx264", "nvenc", "qsv", "vaapi".
constexpr std::string_view optionName(VideoEncoderChoice choice) {
    constexpr std::array<std::string_view, allVideoEncoderChoices.size()> names{
        "auto", "libx264", "nvenc", "qsv", "vaapi"};
    return names[static_cast<std::size_t>(choice)];
}

constexpr std::optional<VideoEncoderChoice> videoEncoderChoiceFrom(std::string_view name) {
    for (const auto choice : allVideoEncoderChoices)
        if (optionName(choice) == name)
            return choice;
    return {};
}

} // namespace vantro::media
