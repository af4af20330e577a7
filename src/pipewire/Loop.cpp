#include "pipewire/Loop.h"

#include "pipewire/Handles.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <stdexcept>

namespace vantro::pipewire {
namespace {

Handle<pw_loop> makeLoop() {
    [[maybe_unused]] static const bool isInitialized = [] {
        pw_init(nullptr, nullptr);
        // What goes wrong comes back as an error and is told once; it would print each attempt.
        const char* debug = std::getenv("PIPEWIRE_DEBUG"); // NOLINT(concurrency-mt-unsafe)
        if (debug == nullptr)
            pw_log_set_level(SPA_LOG_LEVEL_NONE);
        return true;
    }();
    Handle<pw_loop> loop(pw_loop_new(nullptr));
    if (!loop)
        throw std::runtime_error("PipeWire cannot make a loop");
    return loop;
}

} // namespace

struct Loop::Implementation {
    Handle<pw_loop> loop = makeLoop();
    spa_source* alarm = nullptr; // the loop's
};

Loop::Loop() : m_implementation(std::make_unique<Implementation>()) {
    auto* loop = m_implementation->loop.get();
    m_implementation->alarm = pw_loop_add_event(loop, [](void*, std::uint64_t) {}, nullptr);
    if (!m_implementation->alarm)
        throw std::runtime_error("PipeWire cannot make an event");
    // For as long as it exists: outside, other threads' calls would be made at once, on theirs.
    pw_loop_enter(loop);
}

Loop::~Loop() {
    pw_loop_leave(m_implementation->loop.get());
}

void Loop::turn(base::HostDuration longestWait) {
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(
        std::max(longestWait, base::HostDuration::zero()));
    constexpr auto longest = std::chrono::milliseconds(std::chrono::hours(1));
    pw_loop_iterate(m_implementation->loop.get(),
                    static_cast<int>(std::min(wait, longest).count()));
}

bool Loop::turnUntil(const std::function<bool()>& isSo, base::HostDuration longestWait) {
    const auto limit = base::hostNow() + longestWait;
    while (!isSo()) {
        const auto now = base::hostNow();
        if (now >= limit)
            return false;
        turn(limit - now);
    }
    return true;
}

void Loop::wakeUp() {
    pw_loop_signal_event(m_implementation->loop.get(), m_implementation->alarm);
}

pw_loop& Loop::handle() {
    return *m_implementation->loop;
}

} // namespace vantro::pipewire
