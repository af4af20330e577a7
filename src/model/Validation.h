#pragma once

#include "model/Project.h"

#include <cstddef>
#include <string>
#include <vector>

namespace vantro::model {

/// What is absurd about values that are of the right type: a project file may come from anywhere,
/// and a speed of 0 or a length of 1e300 seconds would drive the arithmetic of time and size out
/// of its range, which is fatal there. Asked before any work starts.
///
/// One text each, naming the key by its path, for example:
/// segments[1].speed: must be greater than 0, is -2
/// At most `limit` of them; none for sound values. Any thread.
std::vector<std::string> validationProblems(const Project& project, std::size_t limit = 20);

/// The same for the record of a recording alone; paths start at its own keys.
std::vector<std::string> validationProblems(const RecordingMetadata& metadata,
                                            std::size_t limit = 20);

} // namespace vantro::model
