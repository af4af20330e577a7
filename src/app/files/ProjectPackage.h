#pragma once

namespace vantro::app::files {

/// The names of a project's files in its folder, and of a recording's in its own.
namespace package {

inline constexpr auto extension = ".vantro";
inline constexpr auto projectFile = "project.json";
inline constexpr auto recordingFile = "recording.mov";
inline constexpr auto webcamFile = "webcam.mov";
inline constexpr auto metadataFile = "metadata.json";

} // namespace package

} // namespace vantro::app::files
