#include "pulse/Pulse.h"

#include <atomic>
#include <new>

namespace vantro::pulse {
namespace {

std::atomic<int> silences = 0;

} // namespace

void FreePulse::operator()(pa_context* context) const {
    pa_context_set_state_callback(context, nullptr, nullptr);
    pa_context_set_subscribe_callback(context, nullptr, nullptr);
    pa_context_disconnect(context);
    pa_context_unref(context);
}

void FreePulse::operator()(pa_stream* stream) const {
    pa_stream_set_state_callback(stream, nullptr, nullptr);
    pa_stream_set_write_callback(stream, nullptr, nullptr);
    pa_stream_set_read_callback(stream, nullptr, nullptr);
    pa_stream_set_moved_callback(stream, nullptr, nullptr);
    pa_stream_set_latency_update_callback(stream, nullptr, nullptr);
    pa_stream_set_underflow_callback(stream, nullptr, nullptr);
    pa_stream_disconnect(stream);
    pa_stream_unref(stream);
}

Context connect(pa_mainloop& loop, const char* role, pa_context_notify_cb_t changed, void* user) {
    const std::unique_ptr<pa_proplist, decltype(&pa_proplist_free)> properties(pa_proplist_new(),
                                                                               &pa_proplist_free);
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_NAME, "Vantro");
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ID, "com.vantro.app");
    pa_proplist_sets(properties.get(), PA_PROP_MEDIA_ROLE, role);
    Context context(
        pa_context_new_with_proplist(pa_mainloop_get_api(&loop), "Vantro", properties.get()));
    if (!context)
        throw std::bad_alloc();
    pa_context_set_state_callback(context.get(), changed, user);
    pa_context_connect(context.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
    return context;
}

bool turn(pa_mainloop& loop, int longestWait) {
    return pa_mainloop_prepare(&loop, longestWait) >= 0 && pa_mainloop_poll(&loop) >= 0 &&
           pa_mainloop_dispatch(&loop) >= 0;
}

void forget(pa_operation* operation) {
    if (operation)
        pa_operation_unref(operation);
}

const char* failureOf(const pa_context& context) {
    return pa_strerror(pa_context_errno(&context));
}

OwnSilence::OwnSilence() {
    ++silences;
}

OwnSilence::~OwnSilence() {
    --silences;
}

bool OwnSilence::isKept() {
    return silences > 0;
}

} // namespace vantro::pulse
