#include "window/devices/DeviceChoice.h"

#include "app/state/AppState.h"

#include <algorithm>

namespace vantro::window::devices {

DeviceChoice::DeviceChoice(app::AppState& state, ui::Preferences& preferences, ui::DeviceUse use)
    : m_state(state), m_preferences(preferences), m_use(use) {}

void DeviceChoice::setDevices(std::vector<AttachedDevice> devices) {
    if (m_isKnown && devices == m_devices)
        return;
    m_isKnown = true;
    m_devices = std::move(devices);
    tellState();
    Q_EMIT changed();
}

/// Null for the default one.
const AttachedDevice* DeviceChoice::chosen() const {
    const auto name = m_preferences.device(m_use).name;
    const auto found = std::ranges::find(m_devices, name, &AttachedDevice::name);
    return found == m_devices.end() ? nullptr : &*found;
}

void DeviceChoice::tellState() {
    const auto* device = chosen();
    auto name = device != nullptr ? device->name.toStdString() : std::string();
    if (m_use == ui::DeviceUse::microphone)
        m_state.setMicrophoneDevice(std::move(name));
    else
        m_state.setWebcamDevice(std::move(name));
}

QStringList DeviceChoice::names() const {
    const auto usual = std::ranges::find(m_devices, true, &AttachedDevice::isDefault);
    QStringList names{usual == m_devices.end() ? tr("Default")
                                               : tr("Default (%1)").arg(usual->description)};
    for (const auto& device : m_devices)
        names.append(device.description);
    return names;
}

int DeviceChoice::current() const {
    const auto* device = chosen();
    return device != nullptr ? static_cast<int>(device - m_devices.data()) + 1 : 0;
}

void DeviceChoice::choose(int row) {
    if (row < 0 || row > static_cast<int>(m_devices.size()))
        return;
    ui::RememberedDevice device;
    if (row > 0) {
        const auto& wanted = m_devices[static_cast<std::size_t>(row) - 1];
        device = {.name = wanted.name, .description = wanted.description};
    }
    m_preferences.setDevice(m_use, device);
    tellState();
    Q_EMIT changed();
}

QString DeviceChoice::missing() const {
    const auto wanted = m_preferences.device(m_use);
    // Where there is nothing at all, the switch says so.
    if (m_devices.empty() || wanted.name.isEmpty() || chosen() != nullptr)
        return {};
    return m_use == ui::DeviceUse::microphone
               ? tr("%1 is not connected; the default microphone is used.").arg(wanted.description)
               : tr("%1 is not connected; the default camera is used.").arg(wanted.description);
}

} // namespace vantro::window::devices
