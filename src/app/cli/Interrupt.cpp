#include "app/cli/Interrupt.h"

#include "base/SerialQueue.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <mutex>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>

namespace vantro::app::cli {
namespace {

constexpr int interruptedExitCode = 130; // what shells report for Ctrl-C

sigset_t endingSignals() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGHUP);
    return set;
}

} // namespace

InterruptWatcher::InterruptWatcher() : m_ending(::eventfd(0, EFD_CLOEXEC)) {
    const auto set = endingSignals();
    ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
    std::signal(SIGPIPE, SIG_IGN); // a reader that goes away is a write error, not our end
    m_signals = base::FileDescriptor(::signalfd(-1, &set, SFD_CLOEXEC));
    m_thread = std::thread([this] { watch(); });
}

InterruptWatcher::~InterruptWatcher() {
    const std::uint64_t one = 1;
    if (::write(m_ending.get(), &one, sizeof one) == sizeof one)
        m_thread.join();
    else
        m_thread.detach();
}

void InterruptWatcher::watch() {
    base::setThreadName("vantro.signals");
    for (;;) {
        std::array<pollfd, 2> waiting{pollfd{m_signals.get(), POLLIN, 0},
                                      pollfd{m_ending.get(), POLLIN, 0}};
        if (::poll(waiting.data(), waiting.size(), -1) < 0)
            continue;
        if (waiting[1].revents != 0)
            return;
        signalfd_siginfo info{};
        if (::read(m_signals.get(), &info, sizeof info) != sizeof info)
            continue;
        // A closed terminal may send its signal twice; only people insist.
        if (!m_source.request_stop() && info.ssi_signo != SIGHUP)
            ::_exit(interruptedExitCode);
    }
}

void waitFor(double seconds, const std::stop_token& stop) {
    std::mutex mutex;
    std::condition_variable_any changed;
    std::unique_lock lock(mutex);
    const auto stopped = [&] { return stop.stop_requested(); };
    if (seconds < 0)
        changed.wait(lock, stop, stopped);
    else
        changed.wait_for(lock, stop, std::chrono::duration<double>(seconds), stopped);
}

} // namespace vantro::app::cli
