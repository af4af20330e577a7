#include "capture/sound/PulseQuery.h"

#include <utility>

namespace vantro::capture::sound {
namespace {

std::string textOf(const char* text) {
    return text != nullptr ? text : "";
}

} // namespace

SoundRefusal refusalOf(const pa_context& context) {
    switch (pa_context_errno(&context)) {
    case PA_ERR_ACCESS:
        return {.kind = SoundRefusal::Kind::denied, .reason = "the sound server denies access"};
    case PA_ERR_CONNECTIONREFUSED:
    case PA_ERR_INVALIDSERVER:
        return {.reason = "there is no sound server"};
    case PA_ERR_CONNECTIONTERMINATED:
        return {.reason = "the sound server has gone"};
    case PA_ERR_KILLED:
    case PA_ERR_NOENTITY:
        return {.reason = "the device is gone"};
    default:
        return {.reason = std::string("the sound server says: ") + pulse::failureOf(context)};
    }
}

void PulseQuery::ask(pa_context& context) {
    if (std::exchange(m_isAsking, true)) {
        m_isAskedAgain = true;
        return;
    }
    m_isAskedAgain = false;
    m_catalog = {};
    pulse::forget(pa_context_get_server_info(
        &context,
        [](pa_context* connection, const pa_server_info* info, void* self) {
            static_cast<PulseQuery*>(self)->takeDefaults(*connection, info);
        },
        this));
}

void PulseQuery::follow(pa_context& context) {
    pa_context_set_subscribe_callback(
        &context,
        [](pa_context* connection, pa_subscription_event_type_t, std::uint32_t, void* self) {
            static_cast<PulseQuery*>(self)->ask(*connection);
        },
        this);
    constexpr auto news = static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SERVER |
                                                              PA_SUBSCRIPTION_MASK_SOURCE);
    pulse::forget(pa_context_subscribe(&context, news, nullptr, nullptr));
    ask(context);
}

/// The names are the server's own: what it makes of "@DEFAULT_MONITOR@" may be a microphone.
void PulseQuery::takeDefaults(pa_context& context, const pa_server_info* info) {
    if (info == nullptr)
        return finish(context);
    m_catalog.defaultOutput = textOf(info->default_sink_name);
    m_catalog.defaultInput = textOf(info->default_source_name);
    pulse::forget(pa_context_get_source_info_list(
        &context,
        [](pa_context* connection, const pa_source_info* source, int end, void* self) {
            static_cast<PulseQuery*>(self)->takeSource(*connection, source, end);
        },
        this));
}

void PulseQuery::takeSource(pa_context& context, const pa_source_info* info, int end) {
    if (end != 0)
        return finish(context);
    m_catalog.sources.push_back({.index = info->index,
                                 .name = textOf(info->name),
                                 .description = textOf(info->description),
                                 .isMonitor = info->monitor_of_sink != PA_INVALID_INDEX,
                                 .output = textOf(info->monitor_of_sink_name)});
}

void PulseQuery::finish(pa_context& context) {
    m_isAsking = false;
    if (m_isAskedAgain)
        return ask(context);
    m_answer(m_catalog);
}

} // namespace vantro::capture::sound
