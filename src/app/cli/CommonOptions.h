#pragma once

#include "base/CommandOptions.h"
#include "export/ExportResolution.h"
#include "model/Project.h"
#include "render/scene/Renderer.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vantro::app::cli {

/// The positional argument PROJECT.vantro.
void addProjectArgument(base::Command command, std::filesystem::path& target);
/// --resolution original|4k|1080p|720p.
void addResolutionOption(base::Command command, exporting::ExportResolution& target);
/// --renderer auto|software|gpu.
void addRendererOption(base::Command command, std::string& target);

/// The renderer that --renderer names. Throws VantroError exportFailed where there is none.
std::unique_ptr<render::Renderer> makeRequestedRenderer(const std::string& name);

/// The option check that a file name ends in one of `extensions`.
std::function<std::string(const std::string&)> endsIn(std::vector<std::string> extensions);

/// Throws VantroError exportFailed, before any work is done, when `output` cannot be written or
/// exists and must not be replaced.
void requireWritableOutput(const std::filesystem::path& output, bool replace);

} // namespace vantro::app::cli
