#include "ui/TimeText.h"

#include "base/Fatal.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace vantro::ui {
namespace {

constexpr long minute = 60;
constexpr long hour = 60 * minute;
/// Seconds that arithmetic has left a hair below a tenth still count as that tenth.
constexpr double rounding = 1e-6;

} // namespace

QString elapsedText(double seconds) {
    const auto whole = static_cast<long>(std::max(seconds, 0.0));
    const auto text = whole >= hour ? fmt::format("{}:{:02}:{:02}", whole / hour,
                                                  whole % hour / minute, whole % minute)
                                    : fmt::format("{:02}:{:02}", whole / minute, whole % minute);
    return QString::fromStdString(text);
}

QString positionText(double seconds) {
    const auto tenths = static_cast<long>(std::floor(std::max(seconds, 0.0) * 10 + rounding));
    const auto whole = tenths / 10;
    const auto text = whole >= hour
                          ? fmt::format("{}:{:02}:{:02}.{}", whole / hour, whole % hour / minute,
                                        whole % minute, tenths % 10)
                          : fmt::format("{}:{:02}.{}", whole / minute, whole % minute, tenths % 10);
    return QString::fromStdString(text);
}

QString transportText(double seconds) {
    const auto whole = base::truncatedToInteger(seconds);
    return QString::fromStdString(fmt::format("{:02}:{:02}", whole / minute, whole % minute));
}

} // namespace vantro::ui
