#pragma once

#include "model/Recording.h"

namespace vantro::app::files {

/// Samples and clicks of another recording would be shown at places that mean nothing: throws
/// VantroError projectOpenFailed where the movie plainly lasts longer or shorter than the metadata
/// says. One that cannot be opened says so to whoever needs its pictures.
void requireOwnMovie(const model::Recording& recording);

} // namespace vantro::app::files
