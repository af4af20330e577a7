#pragma once

#include "model/ProjectData.h"

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

/// Writes "project.json" into an existing package folder. Throws VantroError projectSaveFailed.
void writeProjectFile(const std::filesystem::path& packageURL, const model::ProjectData& project);

/// Reads and decodes "project.json"; a custom background is re-pointed to the copy inside the
/// package. Throws VantroError projectOpenFailed, which tells the key that is wrong.
model::ProjectData readProjectFile(const std::filesystem::path& packageURL);

/// Fills the package folder at `packageURL` (made with the folders above it): the recording's files
/// linked or copied from beside `recordingURL`, the custom background copied, "project.json"
/// written last. Each file is replaced whole; a failure leaves what was done before it. Throws
/// VantroError projectSaveFailed.
void saveProject(const std::filesystem::path& packageURL, const std::filesystem::path& recordingURL,
                 const model::ProjectData& project);

/// saveProject for a package that must appear whole: it is filled under a temporary name beside
/// `packageURL` and then takes its place, replacing an earlier package if `replace`. An existing
/// folder that is no package is never replaced.
void saveNewProject(const std::filesystem::path& packageURL,
                    const std::filesystem::path& recordingURL, const model::ProjectData& project,
                    bool replace);

/// Why `packageURL` cannot become a new package, before any work is done; empty when it can.
std::string newPackageProblem(const std::filesystem::path& packageURL, bool replace);

} // namespace vantro::app::files
