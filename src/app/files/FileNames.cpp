#include "app/files/FileNames.h"

#include <algorithm>

namespace vantro::app::files {

std::string safeFileName(std::string_view name) {
    constexpr std::size_t longest = 200; // bytes; 255 with an extension and a temporary suffix
    constexpr auto atEnds = " .";
    auto length = std::min(name.size(), longest);
    while (length < name.size() && length > 0 && (name[length] & 0xC0) == 0x80)
        --length; // do not cut through a character
    std::string safe(name.substr(0, length));
    std::ranges::replace_if(
        safe, [](unsigned char c) { return c == '/' || c == '\\' || c < ' ' || c == 0x7F; }, '-');
    safe.erase(safe.find_last_not_of(atEnds) + 1);
    safe.erase(0, safe.find_first_not_of(atEnds));
    return safe.empty() ? "Untitled" : safe;
}

} // namespace vantro::app::files
