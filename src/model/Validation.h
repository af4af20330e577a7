#pragma once

#include "model/DecodingError.h"
#include "model/Edit.h"
#include "model/RecordingMetadata.h"

namespace vantro::model {

// Finds what is absurd about values that are of the right type: a project file may come from
// anywhere, and a speed of 0 or a length of 1e300 seconds would drive the arithmetic of time and
// size out of its range, which is fatal there. Decoding asks. Throws DecodingError, which names the
// first such key by its path, for example:
// segments[1].speed: must be greater than 0, is -2
// Any thread.

/// Of a recording alone.
void validate(const RecordingMetadata& metadata);
void validate(const Look& look);
/// Of a project.
void validate(const RecordingMetadata& metadata, const Edit& edit);

} // namespace vantro::model
