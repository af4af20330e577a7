#include "capture/sound/PulseQuery.h"

#include <utility>

namespace vantro::capture::sound {
namespace {

std::string textOf(const char* text) {
    return text != nullptr ? text : "";
}

} // namespace

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
