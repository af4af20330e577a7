#pragma once

#include <string_view>

#include <fmt/format.h>

namespace vantro::base {

/// `fatal` is for the last line before the program aborts.
enum class LogLevel { info, warning, error, fatal };

/// Where log lines go. Lines below `terminalLevel` are kept off standard error; every line goes to
/// the systemd journal where one is running. Called once, by main, before other threads start.
void configureLog(LogLevel terminalLevel);

/// Writes one line. Any thread; never throws.
void writeLog(LogLevel level, std::string_view line) noexcept;

template <typename... Args>
void logInfo(fmt::format_string<Args...> format, Args&&... args) {
    writeLog(LogLevel::info, fmt::format(format, std::forward<Args>(args)...));
}
template <typename... Args>
void logWarning(fmt::format_string<Args...> format, Args&&... args) {
    writeLog(LogLevel::warning, fmt::format(format, std::forward<Args>(args)...));
}
template <typename... Args>
void logError(fmt::format_string<Args...> format, Args&&... args) {
    writeLog(LogLevel::error, fmt::format(format, std::forward<Args>(args)...));
}

} // namespace vantro::base
