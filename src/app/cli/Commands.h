#pragma once

#include "app/cli/CommandAction.h"
#include "app/cli/WindowCommands.h"
#include "base/CommandOptions.h"

#include <stop_token>

/// The sub-commands. Each function adds one to the parser and sets `action` when it is chosen.
namespace vantro::app::cli {

void addDisplaysCommand(base::Command app, CommandAction& action);
void addWindowsCommand(base::Command app, CommandAction& action);
void addDoctorCommand(base::Command app, CommandAction& action);
void addDevicesCommand(base::Command app, CommandAction& action);
/// `windows` outlives the action, here and below.
void addRecordCommand(base::Command app, CommandAction& action, const std::stop_token& interrupted,
                      const WindowCommands& windows);
/// `stop`, `toggle` and `mark`.
void addControlCommands(base::Command app, CommandAction& action);
void addExportCommand(base::Command app, CommandAction& action, const std::stop_token& interrupted);
void addFrameCommand(base::Command app, CommandAction& action);
void addRecoverCommand(base::Command app, CommandAction& action, const WindowCommands& windows);
/// `pack` and `unpack`.
void addPackCommands(base::Command app, CommandAction& action);
void addInspectCommand(base::Command app, CommandAction& action);
void addPlayCommand(base::Command app, CommandAction& action, const std::stop_token& interrupted,
                    const WindowCommands& windows);

} // namespace vantro::app::cli
