#include "model/Background.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace vantro::model {
namespace {

int byteComponent(double component) {
    // std::max takes its first argument when the second is not a number.
    return static_cast<int>(std::lround(std::min(std::max(0.0, component), 1.0) * 255));
}

} // namespace

std::string BackgroundColor::hexString() const {
    return fmt::format("#{:02X}{:02X}{:02X}", byteComponent(red), byteComponent(green),
                       byteComponent(blue));
}

BackgroundImageSource BackgroundImageSource::custom(const std::filesystem::path& path) {
    return {.name = backgroundDisplayName(path.stem().string()),
            .path = path,
            .thumbnail = std::nullopt,
            .isBuiltIn = false};
}

std::string backgroundDisplayName(std::string_view basename) {
    constexpr std::string_view photographMark = "-mirelune";
    std::string name(basename);
    for (auto at = name.find(photographMark); at != std::string::npos;
         at = name.find(photographMark, at))
        name.erase(at, photographMark.size());
    std::ranges::replace_if(name, [](char c) { return c == '-' || c == '_'; }, ' ');
    return name;
}

} // namespace vantro::model
