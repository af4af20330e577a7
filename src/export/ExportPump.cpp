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
        std::exception_ptr failure;
        try {
            pumps[index].run(mailbox);
        } catch (...) {
            failure = std::current_exception();
        }
        if (failure && state.with([&](State& now) {
                const bool isFirst = !now.failure;
                if (isFirst)
                    now.failure = failure;
                return isFirst;
            }))
            stopOthers(index);
        if (state.with([](State& now) { return --now.left; }) == 0)
            mailbox.close();
    }

    void stopOthers(std::size_t failed) {
        for (std::size_t index = 0; index < pumps.size(); ++index) {
            if (index != failed)
                pumps[index].stop();
        }
    }
};

} // namespace

void runPumps(std::vector<Pump> pumps, const ExportProgress& progress) {
    Running running;
    running.pumps = std::move(pumps);
    running.state.with([&](Running::State& now) { now.left = running.pumps.size(); });
    {
        std::deque<base::SerialQueue> queues;
        for (std::size_t index = 0; index < running.pumps.size(); ++index)
            queues.emplace_back(running.pumps[index].label).async([&running, index] {
                running.run(index);
            });
        running.mailbox.deliver(progress);
    }
    if (const auto failure = running.state.with([](auto& now) { return now.failure; }))
        std::rethrow_exception(failure);
}

} // namespace vantro::exporting
