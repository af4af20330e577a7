#pragma once

#include "model/Background.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace vantro::model {

/// The directory with the program's own data files: $VANTRO_RESOURCES where that is set, else
/// "../share/vantro" beside the folder of the executable.
std::filesystem::path resourceDirectory();

/// The background pictures that come with the program, in the order in which they are offered.
///
/// Looks into the directory once, at construction; an entry that lacks its picture
/// ("Backgrounds/NAME.jpeg") or its preview ("Backgrounds/Thumbnails/NAME.jpeg") is left out.
/// Immutable afterwards, so any number of threads may ask.
class BackgroundCatalog {
  public:
    explicit BackgroundCatalog(const std::filesystem::path& resources);

    /// The one over resourceDirectory(), made on first use.
    static const BackgroundCatalog& application();

    const std::vector<BackgroundImageSource>& builtInBackgrounds() const { return m_backgrounds; }

    /// The picture of this base name, which may leave out a photograph's "-mirelune".
    std::optional<BackgroundImageSource> builtIn(std::string_view basename) const;

  private:
    std::vector<BackgroundImageSource> m_backgrounds;
};

} // namespace vantro::model
