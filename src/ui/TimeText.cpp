#include "ui/TimeText.h"

#include "base/Fatal.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace vantro::ui {
namespace {

constexpr long minute = 60;
constexpr long hour = 60 * minute;

} // namespace

QString elapsedText(double seconds) {
    const auto whole = static_cast<long>(std::max(seconds, 0.0));
    const auto text = whole >= hour ? fmt::format("{}:{:02}:{:02}", whole / hour,
                                                  whole % hour / minute, whole % minute)
                                    : fmt::format("{:02}:{:02}", whole / minute, whole % minute);
    return QString::fromStdString(text);
}

QString transportText(double seconds) {
    const auto whole = base::truncatedToInteger(seconds);
    return QString::fromStdString(fmt::format("{:02}:{:02}", whole / minute, whole % minute));
}

} // namespace vantro::ui
