#include "window/platform/QuitSignals.h"

#include <csignal>

#include <sys/eventfd.h>

namespace vantro::window {
namespace {

volatile std::sig_atomic_t signalDescriptor = -1;

constexpr int quitSignals[]{SIGINT, SIGTERM, SIGHUP};

void noteSignal(int) {
    const std::uint64_t one = 1;
    // Nothing can be done about a failure here; a second signal tries again.
    [[maybe_unused]] const auto written = ::write(signalDescriptor, &one, sizeof one);
}

} // namespace

QuitSignals::QuitSignals(std::function<void()> quit)
    : m_descriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_notifier(std::make_unique<QSocketNotifier>(m_descriptor.get(), QSocketNotifier::Read)) {
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this, quit = std::move(quit)] {
        std::uint64_t count = 0;
        if (::read(m_descriptor.get(), &count, sizeof count) > 0)
            quit();
    });
    signalDescriptor = m_descriptor.get();
    for (const int number : quitSignals)
        std::signal(number, noteSignal);
}

QuitSignals::~QuitSignals() {
    for (const int number : quitSignals)
        std::signal(number, SIG_DFL);
    signalDescriptor = -1;
}

} // namespace vantro::window
