#pragma once

#include "media/FrameSource.h"
#include "support/Ffmpeg.h"
#include "support/TemporaryFolder.h"

#include <array>
#include <filesystem>
#include <memory>
#include <string>
namespace vantro::test {

using Rgb = std::array<int, 3>;

/// A picture of one color that shows `number` (below 4096) as a row of black and white blocks,
/// which survive lossy coding, scaling and any color space.
std::shared_ptr<media::PixelBuffer> paintedNumber(int number, int width, int height,
                                                  Rgb color = {30, 120, 200});
/// The number painted into the picture.
int numberIn(const media::PixelBuffer& picture);
/// The picture's color at a place, by floating-point arithmetic of our own.
Rgb colorAt(const media::PixelBuffer& picture, int x, int y);

/// The picture that `source` shows at `t`; throws when it shows none.
media::VideoFrame shownAt(media::FrameSource& source, media::MediaTime t);

struct NumberedPictures {
    int count;
    int width;
    int height;
    int rate; ///< a second
};
/// Makes a movie of painted numbers from 0 on; `options` are ffmpeg's, from further inputs on.
void makeNumberedMovie(const std::filesystem::path& movie, const NumberedPictures& pictures,
                       const std::string& options);

/// What ffprobe reports with `-show_<section>` for some streams, at first the first of pictures.
nlohmann::json probe(const std::filesystem::path& movie, const std::string& section,
                     const std::string& streams = "v:0");

} // namespace vantro::test
