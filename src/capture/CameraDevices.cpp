#include "capture/CameraDevices.h"

namespace vantro::capture {

Ability abilityOf(const std::expected<std::vector<CameraDevice>, std::string>& cameras) {
    if (!cameras)
        return {"No camera can be recorded: " + cameras.error() + "."};
    return {cameras->empty() ? "There is no camera." : ""};
}

} // namespace vantro::capture
