#include "capture/GlobalKeys.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace vantro::capture {
namespace {

// As X.Org's keysymdef.h has them.
struct NamedKey {
    std::string_view name;
    std::uint32_t symbol;
};
constexpr NamedKey namedKeys[] = {
    {"Esc", 0xff1b},   {"Tab", 0xff09},        {"Backspace", 0xff08}, {"Return", 0xff0d},
    {"Ins", 0xff63},   {"Del", 0xffff},        {"Pause", 0xff13},     {"Print", 0xff61},
    {"Home", 0xff50},  {"End", 0xff57},        {"Left", 0xff51},      {"Up", 0xff52},
    {"Right", 0xff53}, {"Down", 0xff54},       {"PgUp", 0xff55},      {"PgDown", 0xff56},
    {"Menu", 0xff67},  {"ScrollLock", 0xff14}, {"Space", 0x20}};
constexpr std::uint32_t f1 = 0xffbe;
constexpr std::uint32_t mostFunctionKeys = 35;

std::uint32_t symbolOf(std::string_view name) {
    if (name.size() == 1 && name[0] > ' ' && name[0] < 127)
        return static_cast<std::uint32_t>(name[0] >= 'A' && name[0] <= 'Z' ? name[0] - 'A' + 'a'
                                                                           : name[0]);
    if (name.starts_with('F')) {
        std::uint32_t number = 0;
        const auto* end = name.data() + name.size();
        const auto read = std::from_chars(name.data() + 1, end, number);
        if (read.ec == std::errc() && read.ptr == end && number >= 1 && number <= mostFunctionKeys)
            return f1 + number - 1;
    }
    const auto* found = std::ranges::find(namedKeys, name, &NamedKey::name);
    return found == std::end(namedKeys) ? 0 : found->symbol;
}

} // namespace

std::optional<KeyCombination> parseKeys(std::string_view keys) {
    KeyCombination result;
    const auto take = [&keys](std::string_view modifier) {
        if (!keys.starts_with(modifier))
            return false;
        keys.remove_prefix(modifier.size());
        return true;
    };
    for (bool isMore = true; isMore;) {
        isMore = false;
        for (const auto& [modifier, held] :
             {std::pair{"Ctrl+", &result.control}, std::pair{"Alt+", &result.alt},
              std::pair{"Shift+", &result.shift}, std::pair{"Meta+", &result.super}})
            if (take(modifier))
                *held = isMore = true;
    }
    result.symbol = symbolOf(keys);
    const bool isSign = result.symbol < 0x100;
    const bool isTyped = isSign && !result.control && !result.alt && !result.super;
    return result.symbol == 0 || isTyped ? std::nullopt : std::optional(result);
}

} // namespace vantro::capture
