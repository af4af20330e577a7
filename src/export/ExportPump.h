#pragma once

#include "export/ExportSummary.h"
#include "export/ProgressMailbox.h"

#include <functional>
#include <string>
#include <vector>

namespace vantro::exporting {

/// A job that moves samples from a reader to a writer until the reader has no more.
struct Pump {
    std::string label; ///< of the serial queue that it runs on
    std::function<void(ProgressMailbox&)> run;
    /// Makes `run` end soon; called from another thread when a pump beside it has failed.
    std::function<void()> stop = [] {};
};

/// Runs each pump on a serial queue of its own and hands the progress that the first one posts to
/// `progress` on the calling thread, until all are done. What the first to fail throws is thrown to
/// the caller, after the others have been stopped.
void runPumps(std::vector<Pump> pumps, const ExportProgress& progress);

} // namespace vantro::exporting
