#pragma once

#include "base/CommandOptions.h"
#include "export/ExportResolution.h"
#include "media/values/VideoEncoderChoice.h"
#include "media/values/VideoQuality.h"

#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace vantro::app::cli {

/// A stretch of the output, seconds.
struct OutputRange {
    double start = 0;
    double end = std::numeric_limits<double>::infinity();
};

/// What the export command is asked for.
struct ExportOptions {
    std::vector<std::filesystem::path> projects;
    std::filesystem::path output; ///< a file, or for several projects a folder
    std::optional<OutputRange> range;
    std::optional<int> frameRate;
    std::string format; ///< "mp4" or "gif"; empty: as the output's name says, or mp4
    media::VideoEncoderChoice encoder = media::VideoEncoderChoice::automatic;
    std::optional<media::VideoQuality> quality; ///< of a video; fast unless given
    bool toleratesDamage = false;
    exporting::ExportResolution resolution = exporting::ExportResolution::original;
    std::string renderer = "auto";
    bool force = false;
    bool json = false;
};

/// One project on its way to one file.
struct ProjectExport {
    std::filesystem::path project;
    std::filesystem::path output;
    bool isGif() const { return output.extension() == ".gif"; }
};

/// Of several projects, PROJECT.vantro becomes PROJECT.mp4, or PROJECT.gif, in the output folder.
std::vector<ProjectExport> jobsOf(const ExportOptions& options);

/// Adds the arguments, which fill `options` while the command line is read.
void addExportOptions(base::Command command, ExportOptions& options);
/// Checks what no single option can. Throws base::UsageError.
void checkTogether(const ExportOptions& options);

} // namespace vantro::app::cli
