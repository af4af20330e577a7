#pragma once

#include "model/Project.h"

#include <filesystem>
#include <string>

namespace vantro::app::files {

/// A project on disk: a folder named NAME.vantro that holds "project.json", "recording.mov",
/// "webcam.mov" where there is one, and the copy of a custom background picture.
namespace package {

inline constexpr auto extension = ".vantro";
inline constexpr auto projectFile = "project.json";
inline constexpr auto recordingFile = "recording.mov";
inline constexpr auto webcamFile = "webcam.mov";
inline constexpr auto metadataFile = "metadata.json";

} // namespace package

/// Reads and decodes "project.json"; the project's files are those inside the package. Throws
/// VantroError projectOpenFailed, which tells the key that is wrong. Any thread; blocks.
model::Project readProjectFile(const std::filesystem::path& packagePath);

/// Saves the project as the package `packagePath`, which appears or changes whole or not at all,
/// even if the program is killed. Movies are linked, or copied to another file system; a package
/// that holds the project's own movies already gets a new "project.json" only. An existing package
/// is replaced if `replace`; what lies in it beside a project's files stays. A folder that is no
/// package is left alone.
///
/// Returns the project as it lies there. Throws VantroError projectSaveFailed. Any thread; blocks.
model::Project saveProject(const std::filesystem::path& packagePath, const model::Project& project,
                           bool replace);

/// Why `packagePath` cannot become a package, before any work is done; empty when it can.
std::string packageProblem(const std::filesystem::path& packagePath, bool replace);

} // namespace vantro::app::files
