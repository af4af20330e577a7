#include "capture/wayland/cast/CastOffer.h"

#include "capture/wayland/cast/PixelWalk.h"

#include <string>
#include <utility>

namespace vantro::capture::wayland {
namespace {

constexpr pipewire::Rate fastest{60, 1};

} // namespace

pipewire::StreamRequest requestFor(const PortalStream& source) {
    pipewire::FormatOffer offer{.layouts = castLayouts(),
                                .size = {{1920, 1080}, {1, 1}, {16'384, 16'384}},
                                .rate = {{0, 1}}, // as the screen changes
                                // Some take a screen's rate without its fraction, so nothing fixed.
                                .highestRate = {{fastest, {1, 1}, fastest}}};
    pipewire::StreamRequest request{.name = "Vantro",
                                    .role = "Screen",
                                    .node = source.node,
                                    .target = {},
                                    .offers = {std::move(offer)},
                                    .wantsCursor = true,
                                    .wantsCrop = true,
                                    .wantsTransform = true};
    if (source.serial) {
        request.node.reset();
        request.target = std::to_string(*source.serial);
    }
    return request;
}

} // namespace vantro::capture::wayland
