#pragma once

#include "model/Edit.h"

#include <string>

namespace vantro::app::files {

/// Why the user's own picture behind the film cannot be shown, with its path; empty where it can
/// be, and where there is none. The film then has the usual background. Reads the whole picture;
/// any thread.
std::string pictureProblem(const model::Edit& edit);

} // namespace vantro::app::files
