#include "app/files/DiskForecast.h"

#include <gmock/gmock.h>

namespace vantro::app::files {
namespace {

constexpr std::uint64_t mega = 1'000'000;

struct Looked {
    double at = 0;             ///< seconds
    std::uint64_t written = 0; ///< MB
    std::uint64_t free = 0;    ///< MB, beside the reserve
};

TEST(DiskForecast, IsWhatIsFreeAtTheRateOfTheLastMinute) {
    using testing::DoubleEq;
    using testing::Optional;
    const struct {
        const char* what;
        std::vector<Looked> looks;
        testing::Matcher<std::optional<double>> left;
    } cases[]{{"nothing is known", {}, testing::Eq(std::nullopt)},
              {"too little is known", {{0, 0, 900}, {4, 40, 860}}, testing::Eq(std::nullopt)},
              {"a still screen", {{0, 5, 900}, {50, 5, 900}}, testing::Eq(std::nullopt)},
              {"10 MB a second", {{0, 0, 900}, {10, 100, 800}}, Optional(DoubleEq(80))},
              {"somebody else writes too", {{0, 0, 900}, {10, 100, 300}}, Optional(DoubleEq(30))},
              {"the burst is long past",
               {{0, 0, 900}, {30, 600, 300}, {85, 655, 245}},
               Optional(DoubleEq(245))},
              {"looks that come too fast",
               {{0, 0, 900}, {0.5, 400, 500}, {10, 500, 400}},
               Optional(DoubleEq(8))},
              {"full", {{0, 0, 900}, {10, 900, 0}}, Optional(DoubleEq(0))}};
    for (const auto& each : cases) {
        DiskForecast forecast;
        for (const auto& look : each.looks)
            forecast.add(look.at, {.written = look.written * mega,
                                   .free = (look.free + 64) * mega,
                                   .reserve = 64 * mega});
        EXPECT_THAT(forecast.secondsLeft(), each.left) << each.what;
    }
}

} // namespace
} // namespace vantro::app::files
