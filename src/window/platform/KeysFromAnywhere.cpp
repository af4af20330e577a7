#include "window/platform/KeysFromAnywhere.h"

#include "base/Log.h"
#include "ui/Preferences.h"

#include <utility>

namespace vantro::window {

KeysFromAnywhere::KeysFromAnywhere(ui::Preferences& preferences, KeysService service, Act act)
    : m_preferences(preferences), m_service(std::move(service)), m_act(std::move(act)) {
    if (preferences.hasGlobalKeys())
        setUp(preferences.globalKeys());
}

KeysFromAnywhere::~KeysFromAnywhere() = default;

std::vector<capture::GlobalKey> KeysFromAnywhere::wished() const {
    return m_preferences.globalKeys();
}

void KeysFromAnywhere::turnOff() {
    ++m_request;
    m_keys.reset();
    m_state.reset();
    m_preferences.forgetGlobalKeys();
    Q_EMIT changed();
}

void KeysFromAnywhere::setUp(const std::vector<capture::GlobalKey>& wished) {
    m_keys.reset(); // or the new ones would be taken already
    m_wished = wished;
    m_state = capture::GlobalKeysState();
    const auto onMain = [this, request = ++m_request](auto&& told) {
        // The keys end before this does.
        QMetaObject::invokeMethod(
            this,
            [this, request, told = std::forward<decltype(told)>(told)] {
                if (request == m_request)
                    told();
            },
            Qt::QueuedConnection);
    };
    m_keys = m_service.bind(
        wished,
        {.pressed = [this, onMain](auto action) { onMain([this, action] { m_act(action); }); },
         .changed =
             [this, onMain](auto state) {
                 onMain([this, state = std::move(state)] { take(state); });
             }});
    Q_EMIT changed();
}

void KeysFromAnywhere::take(capture::GlobalKeysState state) {
    m_state = std::move(state);
    if (m_state->kind == capture::GlobalKeysState::Kind::bound)
        m_preferences.setGlobalKeys(m_wished);
    else if (!m_state->whyNot.empty())
        base::logInfo("Keys from anywhere: {}", m_state->whyNot);
    Q_EMIT changed();
}

QString KeysFromAnywhere::markKey() const {
    if (m_state && m_state->kind == capture::GlobalKeysState::Kind::bound)
        for (const auto& [action, keys] : m_state->keys)
            if (action == capture::GlobalAction::mark)
                return QString::fromStdString(keys);
    return {};
}

} // namespace vantro::window
