#include "model/BackgroundCatalog.h"

#include <algorithm>
#include <cstdlib>

#include <fmt/format.h>

namespace vantro::model {
namespace {

constexpr int entryCount = 26;
constexpr int firstPhotograph = 11; // the entries before it are wallpapers
constexpr std::string_view photographMark = "-mirelune";

std::string entryName(int number) {
    return fmt::format("builtin-{:02}{}", number, number >= firstPhotograph ? photographMark : "");
}

std::optional<BackgroundImageSource> load(const std::filesystem::path& resources,
                                          const std::string& name) {
    const auto picture = resources / "Backgrounds" / (name + ".jpeg");
    const auto thumbnail = resources / "Backgrounds" / "Thumbnails" / (name + ".jpeg");
    std::error_code ignored; // a file that cannot be asked about counts as missing
    if (!std::filesystem::is_regular_file(picture, ignored) ||
        !std::filesystem::is_regular_file(thumbnail, ignored))
        return std::nullopt;
    return BackgroundImageSource{.name = backgroundDisplayName(name),
                                 .path = picture,
                                 .thumbnail = thumbnail,
                                 .isBuiltIn = true};
}

} // namespace

std::filesystem::path resourceDirectory() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing in the program changes the environment
    if (const auto* chosen = std::getenv("VANTRO_RESOURCES"); chosen != nullptr && *chosen != '\0')
        return chosen;
    std::error_code ignored; // without /proc the path stays relative and finds nothing
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", ignored);
    return executable.parent_path().parent_path() / "share" / "vantro";
}

BackgroundCatalog::BackgroundCatalog(const std::filesystem::path& resources) {
    for (int number = 1; number <= entryCount; ++number) {
        if (auto background = load(resources, entryName(number)))
            m_backgrounds.push_back(std::move(*background));
    }
}

const BackgroundCatalog& BackgroundCatalog::application() {
    static const BackgroundCatalog catalog(resourceDirectory());
    return catalog;
}

std::optional<BackgroundImageSource> BackgroundCatalog::builtIn(std::string_view basename) const {
    const auto found = std::ranges::find_if(m_backgrounds, [&](const auto& background) {
        const auto stem = background.path.stem().string();
        return stem == basename ||
               (stem.ends_with(photographMark) &&
                std::string_view(stem).substr(0, stem.size() - photographMark.size()) == basename);
    });
    return found == m_backgrounds.end() ? std::nullopt : std::optional(*found);
}

} // namespace vantro::model
