#pragma once

#include "base/CommandOptions.h"

#include <string>

namespace vantro::app::cli {

/// The manual page in section 1, in the language of man(7).
std::string manualPage(const base::CommandDescription& program, const std::string& version);

} // namespace vantro::app::cli
