#include "media/av/encode/RenderNodes.h"

#include <algorithm>
#include <fstream>
#include <string>
#include <system_error>

namespace vantro::media::av {
namespace {

namespace fs = std::filesystem;

bool isMadeByIntel(const std::string& node) {
    std::ifstream file("/sys/class/drm/" + node + "/device/vendor");
    std::string vendor;
    return std::getline(file, vendor) && vendor == "0x8086";
}

} // namespace

std::vector<RenderNode> renderNodes() {
    std::vector<RenderNode> nodes;
    std::error_code error;
    for (fs::directory_iterator entry("/dev/dri", error), end; !error && entry != end;
         entry.increment(error)) {
        const auto name = entry->path().filename().string();
        if (name.starts_with("renderD"))
            nodes.push_back({entry->path(), isMadeByIntel(name)});
    }
    std::ranges::sort(nodes, {}, &RenderNode::path);
    return nodes;
}

} // namespace vantro::media::av
