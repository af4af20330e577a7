#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace vantro::model {

/// sRGB components, 0 to 1.
struct BackgroundColor {
    double red = 0.15;
    double green = 0.15;
    double blue = 0.15;

    /// "#RRGGBB" in upper case.
    std::string hexString() const;
    bool operator==(const BackgroundColor&) const = default;
};

/// A background picture: one that comes with the program or the user's own.
struct BackgroundImageSource {
    std::string name;                               ///< for display
    std::filesystem::path path;                     ///< the full picture
    std::optional<std::filesystem::path> thumbnail; ///< a small preview
    bool isBuiltIn = false;

    /// The user's own picture at `path`.
    static BackgroundImageSource custom(const std::filesystem::path& path);
    bool operator==(const BackgroundImageSource&) const = default;
};

/// A picture's base name as people read it: without "-mirelune", with "-" and "_" as spaces.
std::string backgroundDisplayName(std::string_view basename);

using BackgroundType = std::variant<BackgroundColor, BackgroundImageSource>;

struct BackgroundSettings {
    BackgroundType type = BackgroundColor{};
    double padding = 0.08;      ///< fraction of the canvas left free on each side
    double cornerRadius = 32.0; ///< canvas pixels
    bool operator==(const BackgroundSettings&) const = default;
};

} // namespace vantro::model
