#include "capture/SoundDevices.h"

#include <algorithm>

namespace vantro::capture {

SoundAbilities abilitiesOf(const std::expected<std::vector<SoundDevice>, std::string>& devices) {
    if (!devices)
        return {.system = {"The sound of the system cannot be recorded: " + devices.error() + "."},
                .microphone = {"No microphone can be recorded: " + devices.error() + "."}};
    const auto hasDefault = [&](const SoundDevice& each) {
        return each.kind == SoundKind::system && each.isDefault;
    };
    SoundAbilities able;
    if (std::ranges::none_of(*devices, hasDefault))
        able.system.whyNot = "The sound of the system cannot be recorded: there is no output.";
    if (std::ranges::find(*devices, SoundKind::microphone, &SoundDevice::kind) == devices->end())
        able.microphone.whyNot = "There is no microphone.";
    return able;
}

} // namespace vantro::capture
