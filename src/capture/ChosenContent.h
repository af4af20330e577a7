#pragma once

#include "media/values/PixelBuffer.h"
#include "model/Geometry.h"

#include <memory>
#include <optional>
#include <string>

namespace vantro::capture {

/// What a user has chosen in the desktop's own dialog, for whoever shows it or selects an area of
/// it before it is recorded. A plain record.
struct ChosenContent {
    bool isRestored = false; ///< an earlier choice that holds again: perhaps nobody was asked
    std::string name{};      ///< the desktop's own; empty where it has none
    /// Where it lies, in the compositor's units; absent where the desktop does not tell, as for
    /// areas that its dialog has cut out already.
    std::optional<model::Rect> place{};
    std::shared_ptr<const media::PixelBuffer> picture{}; ///< its newest: bgra, upright
    double pixelsPerPoint = 1;                           ///< a whole number
};

} // namespace vantro::capture
