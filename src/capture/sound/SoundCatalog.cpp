#include "capture/sound/SoundCatalog.h"

#include <algorithm>

namespace vantro::capture::sound {

const ServerSource* chooseSource(SoundKind kind, const std::string& device,
                                 const SoundCatalog& catalog) {
    const auto find = [&](auto&& isWanted) {
        const auto found = std::ranges::find_if(catalog.sources, isWanted);
        return found == catalog.sources.end() ? nullptr : &*found;
    };
    if (kind == SoundKind::system)
        return find([&](const ServerSource& each) {
            return each.isMonitor && !catalog.defaultOutput.empty() &&
                   each.output == catalog.defaultOutput;
        });
    const auto& name = device.empty() ? catalog.defaultInput : device;
    const auto* named = find([&](const ServerSource& each) {
        return !each.isMonitor && (each.name == name || each.description == name);
    });
    return named || !device.empty()
               ? named
               : find([](const ServerSource& each) { return !each.isMonitor; });
}

std::vector<SoundDevice> devicesOf(const SoundCatalog& catalog) {
    std::vector<SoundDevice> devices;
    for (const auto kind : {SoundKind::system, SoundKind::microphone}) {
        const auto* usual = chooseSource(kind, {}, catalog);
        for (const auto& each : catalog.sources)
            if (each.isMonitor == (kind == SoundKind::system))
                devices.push_back({.kind = kind,
                                   .name = each.name,
                                   .description = each.description,
                                   .isDefault = &each == usual});
    }
    return devices;
}

} // namespace vantro::capture::sound
