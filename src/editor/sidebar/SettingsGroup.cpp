#include "editor/sidebar/SettingsGroup.h"

#include <algorithm>
#include <cmath>

namespace vantro::editor::sidebar {

SettingsGroup::SettingsGroup(app::AppState& state, EditSteps& steps, Differ differ)
    : m_state(state), m_steps(steps) {
    connect(&state.document(), &app::EditDocument::changed, this,
            [this, differ](const app::EditDocument::Content& before) {
                const auto& now = m_state.document().content();
                const bool sameRecording =
                    before.recording.has_value() == now.recording.has_value() &&
                    (!now.recording || before.recording->isSameAs(*now.recording));
                if (!sameRecording || differ(before.edit, now.edit))
                    Q_EMIT changed();
            });
}

double SettingsGroup::duration() const {
    const auto* metadata = m_state.metadata();
    return metadata != nullptr ? metadata->endTime : 0;
}

void SettingsGroup::setNumber(std::string name, double model::Edit::* field, double value,
                              double least, double most) {
    if (std::isfinite(value))
        change(std::move(name), [&](auto& edit) { edit.*field = std::clamp(value, least, most); });
}

} // namespace vantro::editor::sidebar
