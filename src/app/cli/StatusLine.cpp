#include "app/cli/StatusLine.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include <fmt/format.h>
#include <unistd.h>

namespace vantro::app::cli {
namespace {

constexpr auto eraseLine = "\r\x1b[K";

} // namespace

void tell(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

StatusLine::StatusLine() : m_visible(::isatty(STDERR_FILENO) == 1) {}

StatusLine::~StatusLine() {
    clear();
}

void StatusLine::show(std::string_view text) {
    if (!m_visible)
        return;
    tell(fmt::format("{}{}", eraseLine, text));
    m_written = true;
}

void StatusLine::clear() {
    if (!m_written)
        return;
    tell(eraseLine);
    m_written = false;
}

std::string progressBar(double fraction, int width) {
    const int filled = static_cast<int>(std::lround(std::clamp(fraction, 0.0, 1.0) * width));
    return fmt::format("[{:#>{}}{:->{}}]", "", filled, "", width - filled);
}

std::string clockText(double seconds) {
    const auto whole = static_cast<long>(std::max(0.0, seconds));
    const long minutes = whole / 60;
    if (minutes < 60)
        return fmt::format("{}:{:02}", minutes, whole % 60);
    return fmt::format("{}:{:02}:{:02}", minutes / 60, minutes % 60, whole % 60);
}

std::string sizeText(double bytes) {
    constexpr std::array units{"kB", "MB", "GB", "TB"};
    if (bytes < 1000)
        return fmt::format("{:.0f} bytes", bytes);
    std::size_t unit = 0;
    double value = bytes / 1000;
    while (value >= 1000 && unit + 1 < units.size()) {
        value /= 1000;
        ++unit;
    }
    return fmt::format("{:.1f} {}", value, units[unit]);
}

} // namespace vantro::app::cli
