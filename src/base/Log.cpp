#include "base/Log.h"

#include <filesystem>
#include <memory>

#include <spdlog/sinks/stdout_color_sinks.h>
#include <spdlog/sinks/systemd_sink.h>
#include <spdlog/spdlog.h>

namespace vantro::base {
namespace {

spdlog::level::level_enum toSpdlog(LogLevel level) {
    switch (level) {
    case LogLevel::info:
        return spdlog::level::info;
    case LogLevel::warning:
        return spdlog::level::warn;
    case LogLevel::error:
        return spdlog::level::err;
    case LogLevel::fatal:
        return spdlog::level::critical;
    }
    return spdlog::level::critical;
}

std::shared_ptr<spdlog::logger> makeLogger(LogLevel terminalLevel) {
    auto terminal = std::make_shared<spdlog::sinks::stderr_color_sink_mt>();
    terminal->set_pattern("vantro: %v");
    terminal->set_level(toSpdlog(terminalLevel));
    auto logger = std::make_shared<spdlog::logger>("vantro", terminal);
    if (std::error_code error; std::filesystem::exists("/run/systemd/journal/socket", error))
        logger->sinks().push_back(std::make_shared<spdlog::sinks::systemd_sink_mt>());
    logger->set_level(spdlog::level::info);
    return logger;
}

std::shared_ptr<spdlog::logger>& logger() {
    static auto instance = makeLogger(LogLevel::warning);
    return instance;
}

} // namespace

void configureLog(LogLevel terminalLevel) {
    logger() = makeLogger(terminalLevel);
}

void writeLog(LogLevel level, std::string_view line) noexcept {
    try {
        logger()->log(toSpdlog(level), "{}", line);
    } catch (...) { // a full disk behind standard error must not end a recording
        return;
    }
}

} // namespace vantro::base
