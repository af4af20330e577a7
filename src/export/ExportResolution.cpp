#include "export/ExportResolution.h"

namespace vantro::exporting {
namespace {

struct Entry {
    ExportResolution resolution;
    std::string_view label;
    std::string_view optionName;
    model::Size size; ///< empty: the recording's own
};

constexpr std::array entries{
    Entry{ExportResolution::original, "Original", "original", {}},
    Entry{ExportResolution::fourK, "4K (3840x2160)", "4k", {3840, 2160}},
    Entry{ExportResolution::hd1080, "1080p", "1080p", {1920, 1080}},
    Entry{ExportResolution::hd720, "720p", "720p", {1280, 720}},
};

const Entry& entryOf(ExportResolution resolution) {
    return entries[static_cast<std::size_t>(resolution)];
}

} // namespace

std::string_view label(ExportResolution resolution) {
    return entryOf(resolution).label;
}

std::string_view optionName(ExportResolution resolution) {
    return entryOf(resolution).optionName;
}

std::optional<ExportResolution> exportResolutionFrom(std::string_view optionName) {
    for (const auto& entry : entries)
        if (entry.optionName == optionName)
            return entry.resolution;
    return std::nullopt;
}

model::Size baseSize(ExportResolution resolution, model::Size recordingSize) {
    const auto& size = entryOf(resolution).size;
    return size == model::Size{} ? recordingSize : size;
}

} // namespace vantro::exporting
