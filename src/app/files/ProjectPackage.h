#pragma once

#include "model/Project.h"

#include <filesystem>

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
/// VantroError projectOpenFailed, which tells the key that is wrong.
model::Project readProjectFile(const std::filesystem::path& packagePath);

/// Fills the package folder at `packagePath` (made with the folders above it): the recording's
/// files linked or copied, the custom background copied, "project.json" written last. Each file is
/// replaced whole; a failure leaves what was done before it. Returns the project with its recording
/// in the package. Throws VantroError projectSaveFailed.
model::Project saveProject(const std::filesystem::path& packagePath, model::Project project);

/// saveProject for a package that must appear whole: it is filled under a temporary name beside
/// `packagePath` and then takes its place, replacing an earlier package if `replace`. An existing
/// folder that is no package is never replaced.
void saveNewProject(const std::filesystem::path& packagePath, const model::Project& project,
                    bool replace);

/// Why `packagePath` cannot become a new package, before any work is done; empty when it can.
std::string newPackageProblem(const std::filesystem::path& packagePath, bool replace);

} // namespace vantro::app::files
