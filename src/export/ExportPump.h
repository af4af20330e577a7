#pragma once

#include "export/ExportSummary.h"
#include "export/ProgressMailbox.h"

#include <functional>
#include <string>

namespace vantro {

/// Runs `pump` on a serial queue named `label` and hands the progress that it posts to `progress`
/// on the calling thread, until the pump is done. What the pump throws is thrown to the caller.
void runPump(const std::string& label, const std::function<void(ProgressMailbox&)>& pump,
             const ExportProgress& progress);

} // namespace vantro
