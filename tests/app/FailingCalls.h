#pragma once

#include "app/CommandLineFixture.h"

#include <cerrno>
#include <system_error>

#include <gmock/gmock.h>

namespace vantro::test {

/// How calls that change files below a folder go wrong, as FailingFiles.cpp reads it.
struct Manner {
    std::string text;
    int error = 0; ///< what the user is to be told; 0 where nothing goes wrong

    static Manner onwards(int error) { return {"onwards:" + std::to_string(error), error}; }
    static Manner once(int error) { return {"once:" + std::to_string(error), error}; }
    static Manner kill() { return {"kill", 0}; }
    static Manner shortWrites() { return {"short", 0}; }
};

/// A run of the program in which the `call`th call failed.
struct FailedRun {
    int call = 0;
    std::string what; ///< which call and on which path
    Result result;
};

/// Runs the program again and again, with the first such call going wrong, the second, and so on,
/// until it makes no such call any more. `prepare` comes before every run, `check` after it.
/// The number of calls.
inline int forEveryCall(const Manner& manner, const std::filesystem::path& folder,
                        const std::string& environment, const std::string& arguments,
                        const std::function<void()>& prepare,
                        const std::function<void(const FailedRun&)>& check) {
    const TemporaryFolder notes;
    const auto report = notes / "report";
    for (int call = 1;; ++call) {
        prepare();
        std::filesystem::remove(report);
        const auto variables = fmt::format(
            "{} LD_PRELOAD='{}' ASAN_OPTIONS=verify_asan_link_order=0 FAILING_FOLDER='{}' "
            "FAILING_CALL={} FAILING_MANNER={} FAILING_REPORT='{}'",
            environment, FAILING_FILES_LIBRARY, folder.string(), call, manner.text,
            report.string());
        FailedRun run{call, {}, vantro(arguments, variables)};
        std::ifstream file(report);
        if (!std::getline(file, run.what)) {
            EXPECT_EQ(run.result.exitCode, 0) << run.result.output;
            return call - 1;
        }
        SCOPED_TRACE(fmt::format("{} {}: {}\n{}", manner.text, call, run.what, run.result.output));
        check(run);
        if (::testing::Test::HasFailure() || call > 1000)
            return call;
    }
}

/// One line that names the path and the reason, and an exit status that says it failed.
inline void expectClearError(const FailedRun& run, const std::filesystem::path& path, int error) {
    const auto reason = std::generic_category().message(error);
    EXPECT_EQ(run.result.exitCode, 1);
    EXPECT_THAT(run.result.output, ::testing::StartsWith("vantro: "));
    EXPECT_THAT(run.result.output, ::testing::HasSubstr(path.string()));
    EXPECT_THAT(run.result.output, ::testing::HasSubstr(reason));
    EXPECT_EQ(std::ranges::count(run.result.output, '\n'), 1);
}

} // namespace vantro::test
