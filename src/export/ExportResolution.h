#pragma once

#include "model/Geometry.h"

#include <array>
#include <optional>
#include <string_view>

namespace vantro::exporting {

enum class ExportResolution { original, fourK, hd1080, hd720 };

inline constexpr std::array allExportResolutions{ExportResolution::original,
                                                 ExportResolution::fourK, ExportResolution::hd1080,
                                                 ExportResolution::hd720};

/// For pickers: "Original", "4K (3840x2160)", "1080p", "720p".
std::string_view label(ExportResolution resolution);
/// For the command line: "original", "4k", "1080p", "720p".
std::string_view optionName(ExportResolution resolution);
std::optional<ExportResolution> exportResolutionFrom(std::string_view optionName);

/// The output size before the canvas aspect is applied, pixels.
model::Size baseSize(ExportResolution resolution, model::Size recordingSize);

} // namespace vantro::exporting
