#pragma once

#include "app/cli/RecordingWatch.h"
#include "base/CommandOptions.h"
#include "capture/RecordingRequest.h"

#include <filesystem>

namespace vantro::app::cli {

/// What the record command is asked for.
struct RecordOptions {
    std::filesystem::path output;
    capture::RecordingRequest request;
    double delay = 0; ///< seconds before the start
    RecordingLimits limits;
    bool force = false;
    bool json = false;
};

/// Adds the arguments, which fill `options` while the command line is read.
void addRecordOptions(base::Command command, RecordOptions& options);

} // namespace vantro::app::cli
