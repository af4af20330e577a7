#include "export/ExportPump.h"

#include "base/Guarded.h"
#include "base/SerialQueue.h"

#include <deque>
#include <exception>

namespace vantro::exporting {
namespace {

/// What the pumps that run side by side share.
struct Running {
    std::vector<Pump> pumps;
    ProgressMailbox mailbox;
    struct State {
        std::size_t left = 0;
        std::exception_ptr failure;
    };
    base::Guarded<State> state;

    void run(std::size_t index) {
        try {
            pumps[index].run(mailbox);
        } catch (...) {
            fail(std::current_exception(), index);
        }
        if (state.with([](State& now) { return --now.left; }) == 0)
            mailbox.close();
    }

    /// The first failure stops the pumps that have not failed.
    void fail(std::exception_ptr failure, std::size_t failed) {
        const bool isFirst = state.with([&](State& now) {
            if (now.failure)
                return false;
            now.failure = std::move(failure);
            return true;
        });
        for (std::size_t index = 0; isFirst && index < pumps.size(); ++index)
            if (index != failed)
                pumps[index].stop();
    }
};

} // namespace

void runPumps(std::vector<Pump> pumps, const ExportProgress& progress) {
    Running running;
    running.pumps = std::move(pumps);
    const std::size_t count = running.pumps.size();
    running.state.with([&](Running::State& now) { now.left = count; });
    {
        std::deque<base::SerialQueue> queues;
        for (std::size_t index = 0; index < count; ++index)
            queues.emplace_back(running.pumps[index].label).async([&running, index] {
                running.run(index);
            });
        try {
            running.mailbox.deliver(progress);
        } catch (...) {
            running.fail(std::current_exception(), count);
        }
    }
    if (const auto failure = running.state.with([](auto& now) { return now.failure; }))
        std::rethrow_exception(failure);
}

} // namespace vantro::exporting
