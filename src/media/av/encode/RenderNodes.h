#pragma once

#include <filesystem>
#include <vector>

namespace vantro::media::av {

/// A device for drawing and encoding without a display.
struct RenderNode {
    std::filesystem::path path; ///< for example /dev/dri/renderD128
    bool isIntel = false;
};

/// This machine's, in the order of their numbers. Any thread.
std::vector<RenderNode> renderNodes();

} // namespace vantro::media::av
