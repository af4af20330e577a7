#pragma once

#include "base/CommandOptions.h"

#include <optional>
#include <string>

namespace vantro::app::cli {

/// The script by which a shell completes the program's command line; nothing for a shell other than
/// bash, zsh and fish.
std::optional<std::string> completionScript(const base::CommandDescription& program,
                                            const std::string& shell);

} // namespace vantro::app::cli
