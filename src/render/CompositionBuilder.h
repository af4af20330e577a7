#pragma once

#include "media/Composition.h"
#include "model/TimelineSegment.h"

#include <span>

namespace vantro::render {

/// The kept ranges of `asset` back to back, each stretched or squeezed to its speed; track 0 of the
/// result is the video, audio tracks follow. Range bounds are rounded to 1/600 s. Throws
/// VantroError when nothing can be composed.
media::Composition buildComposition(const media::Asset& asset, const media::AssetTrack& videoTrack,
                                    std::span<const model::TimelineSegment> segments);

/// All of `asset` at its own speed, to its exact end. Tracks as above.
media::Composition wholeComposition(const media::Asset& asset, const media::AssetTrack& videoTrack);

} // namespace vantro::render
