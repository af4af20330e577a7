#pragma once

#include <memory>

#include <pulse/pulseaudio.h>

/// What playing and recording through libpulse share. Each of them calls it from one thread, which
/// runs a main loop of its own.
namespace vantro::pulse {

struct FreePulse {
    void operator()(pa_mainloop* loop) const { pa_mainloop_free(loop); }
    void operator()(pa_context* context) const;
    void operator()(pa_stream* stream) const;
};
using Loop = std::unique_ptr<pa_mainloop, FreePulse>;
using Context = std::unique_ptr<pa_context, FreePulse>;
using Stream = std::unique_ptr<pa_stream, FreePulse>;

/// Begins to connect to the desktop's server under Vantro's name; no server is started for that.
/// `role` is the media role of what the connection is for. `changed` is called with `user` whenever
/// the state changes, at first before this returns.
Context connect(pa_mainloop& loop, const char* role, pa_context_notify_cb_t changed, void* user);

/// One turn of a loop: waits at most so many microseconds, or for ever where that is negative, for
/// something to do, and does it. False when the loop is at its end.
bool turn(pa_mainloop& loop, int longestWait);

/// Lets an operation run of which only the news matter that come by callbacks; null is taken, too.
void forget(pa_operation* operation);

/// Why the last call on that connection has failed.
const char* failureOf(const pa_context& context);

/// While one exists nothing of Vantro's own is played, so that none of it gets into a recording of
/// the system's sound. Any thread.
class OwnSilence {
  public:
    OwnSilence();
    ~OwnSilence();
    OwnSilence(const OwnSilence&) = delete;
    OwnSilence& operator=(const OwnSilence&) = delete;

    static bool isKept();
};

} // namespace vantro::pulse
