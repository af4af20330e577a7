#pragma once

#include "base/OutputFile.h"

#include <cstdint>
#include <functional>
#include <string>

namespace vantro::exporting {

enum class ExportOutcome { finished, cancelled };

/// Called with the fraction done, 0 to 1, once for each whole percent and in finer steps while the
/// file is finished, on the thread that called the exporter.
using ExportProgress = std::function<void(double fraction)>;

/// The last percent of an export: when all frames are composed, the file is finished.
inline base::Finishing whileFinishing(const std::stop_token& cancelled,
                                      const ExportProgress& progress) {
    return base::Finishing{cancelled, progress}.part(0.99, 1);
}

/// What an export wrote, for people and logs.
struct ExportSummary {
    ExportOutcome outcome = ExportOutcome::finished;
    int width = 0;
    int height = 0;
    std::int64_t frameCount = 0;
    double duration = 0; ///< seconds
    /// What encoded a video: "libx264", "nvenc", or "nvenc, libx264" where one gave out on the way.
    /// Empty for a GIF.
    std::string encoder{}; // NOLINT(readability-redundant-member-init): may be left out
    /// Why the output ends before the edit does; empty when it is whole.
    std::string damage{}; // NOLINT(readability-redundant-member-init): may be left out
};

} // namespace vantro::exporting
