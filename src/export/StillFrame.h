#pragma once

#include "export/ComposedMovie.h"

namespace vantro::exporting {

/// The composed picture at output second `time`, bgra, with the canvas's own size: what an export
/// shows then, before encoding. A time outside of the output throws VantroError exportFailed, as
/// does everything that would fail an export.
std::shared_ptr<const media::PixelBuffer>
composeStillFrame(const model::Recording& recording, const model::Edit& edit,
                  ExportResolution resolution, double time,
                  std::unique_ptr<render::Renderer> renderer);

} // namespace vantro::exporting
