#include "export/ExportPump.h"

#include <chrono>
#include <future>
#include <stdexcept>

#include <gtest/gtest.h>

namespace vantro::exporting {
namespace {

TEST(ExportPump, StopsTheOtherWorkAndPassesTheFailureOn) {
    enum class Failing { pump, progress };
    for (const auto failing : {Failing::pump, Failing::progress}) {
        std::promise<void> stop;
        bool wasStopped = false;
        std::vector<Pump> pumps;
        pumps.push_back({.label = "busy",
                         .run =
                             [&](ProgressMailbox& mailbox) {
                                 mailbox.post(0.5);
                                 wasStopped =
                                     stop.get_future().wait_for(std::chrono::seconds(20)) ==
                                     std::future_status::ready;
                             },
                         .stop = [&] { stop.set_value(); }});
        pumps.push_back({.label = "short", .run = [&](ProgressMailbox&) {
                             if (failing == Failing::pump)
                                 throw std::runtime_error("failed");
                         }});
        const auto progress = [&](double) {
            if (failing == Failing::progress)
                throw std::runtime_error("failed");
        };
        EXPECT_THROW(runPumps(std::move(pumps), progress), std::runtime_error);
        EXPECT_TRUE(wasStopped);
    }
}

} // namespace
} // namespace vantro::exporting
