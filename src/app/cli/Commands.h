#pragma once

#include "app/cli/CommandAction.h"

#include <stop_token>

#include <CLI/App.hpp>

/// The sub-commands. Each function adds one to the parser and sets `action` when it is chosen.
namespace vantro::app::cli {

void addDisplaysCommand(CLI::App& app, CommandAction& action);
void addWindowsCommand(CLI::App& app, CommandAction& action);
void addRecordCommand(CLI::App& app, CommandAction& action, const std::stop_token& interrupted);
void addExportCommand(CLI::App& app, CommandAction& action, const std::stop_token& interrupted);
void addFrameCommand(CLI::App& app, CommandAction& action);
void addRecoverCommand(CLI::App& app, CommandAction& action);
void addInspectCommand(CLI::App& app, CommandAction& action);

} // namespace vantro::app::cli
