#pragma once

#include "export/ExportResolution.h"
#include "media/values/VideoQuality.h"
#include "model/Edit.h"
#include "model/Recording.h"

#include <array>
#include <filesystem>
#include <functional>
#include <stop_token>

namespace vantro::app::flows {

enum class ExportFormat { mp4, gif };

inline constexpr std::array allExportFormats{ExportFormat::mp4, ExportFormat::gif};

/// One export as the user asked for it.
struct ExportJob {
    model::Recording recording;
    model::Edit edit;
    ExportFormat format = ExportFormat::mp4;
    exporting::ExportResolution resolution = exporting::ExportResolution::original;
    media::VideoQuality quality = media::VideoQuality::fast; ///< of a movie
    std::filesystem::path output;
};

/// Does an export; blocks. Called on one worker thread. Throws VantroError or another
/// std::exception; being cancelled is no failure.
using ExportRunner =
    std::function<void(const ExportJob& job, const std::function<void(double fraction)>& progress,
                       const std::stop_token& cancelled)>;

} // namespace vantro::app::flows
