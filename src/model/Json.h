#pragma once

#include "model/ProjectData.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace vantro {

/// A document that cannot be read. The text names the key by its path and says what is wrong with
/// it, for example: metadata.clickEvents[3].x: expected a number, found a string
class DecodingError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// "metadata.json": compact.
std::string encodeMetadata(const RecordingMetadata& metadata);
RecordingMetadata decodeMetadata(std::string_view json);

/// "project.json": pretty-printed with sorted keys.
std::string encodeProject(const ProjectData& project);
ProjectData decodeProject(std::string_view json);

} // namespace vantro
