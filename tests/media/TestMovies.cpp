#include "TestMovies.h"

#include <algorithm>
#include <cmath>
#include <fstream>

#include <fmt/format.h>

namespace vantro::test {
namespace {

constexpr int blocks = 12;

/// The blocks stand in the upper quarter, leaving the rest to the picture's color.
int blockSide(int width) {
    return width / blocks;
}

/// Red, green and blue of these samples, straight from the standards' definitions.
std::array<double, 3> exactColor(media::ColorDescription color, double y, double u, double v) {
    const double kr = color.matrix == media::ColorMatrix::bt709 ? 0.2126 : 0.299;
    const double kb = color.matrix == media::ColorMatrix::bt709 ? 0.0722 : 0.114;
    const double luma = color.fullRange ? y : (y - 16) * 255 / 219;
    const double scale = color.fullRange ? 1 : 255.0 / 224;
    const double red = luma + 2 * (1 - kr) * (v - 128) * scale;
    const double blue = luma + 2 * (1 - kb) * (u - 128) * scale;
    return {red, (luma - kr * red - kb * blue) / (1 - kr - kb), blue};
}

} // namespace

std::shared_ptr<media::PixelBuffer> paintedNumber(int number, int width, int height, Rgb color) {
    auto picture = media::PixelBuffer::allocate(media::PixelFormat::bgra, width, height);
    const int side = blockSide(width);
    for (int y = 0; y < height; ++y) {
        std::uint8_t* pixel = picture->mutableRow(0, y);
        for (int x = 0; x < width; ++x, pixel += 4) {
            const bool inBlocks = y < side && x / side < blocks;
            const int block = (number >> (x / side)) % 2 == 0 ? 0 : 255;
            for (int channel = 0; channel < 3; ++channel)
                pixel[channel] = static_cast<std::uint8_t>(inBlocks ? block : color[2 - channel]);
            pixel[3] = 255;
        }
    }
    return picture;
}

int numberIn(const media::PixelBuffer& picture) {
    const int side = blockSide(picture.width());
    int number = 0;
    for (int block = 0; block < blocks; ++block) {
        const int x = block * side + side / 2;
        if (colorAt(picture, x, side / 2)[1] > 127)
            number |= 1 << block;
    }
    return number;
}

Rgb colorAt(const media::PixelBuffer& picture, int x, int y) {
    if (picture.format() == media::PixelFormat::bgra) {
        const std::uint8_t* pixel = picture.row(0, y) + std::ptrdiff_t{x} * 4;
        return {pixel[2], pixel[1], pixel[0]};
    }
    const std::ptrdiff_t column = x / 2;
    const int row = y / 2;
    const auto exact = exactColor(picture.color(), picture.row(0, y)[x],
                                  picture.row(1, row)[column], picture.row(2, row)[column]);
    const auto byte = [](double value) {
        return static_cast<int>(std::lround(std::clamp(value, 0.0, 255.0)));
    };
    return {byte(exact[0]), byte(exact[1]), byte(exact[2])};
}

media::VideoFrame shownAt(media::FrameSource& source, media::MediaTime t) {
    const auto frame = source.frameAt(t);
    if (!frame)
        throw std::runtime_error("no picture is shown");
    return *frame;
}

void makeNumberedMovie(const std::filesystem::path& movie, const NumberedPictures& pictures,
                       const std::string& options) {
    const auto& [count, width, height, rate] = pictures;
    {
        std::ofstream raw(movie.parent_path() / "raw", std::ios::binary);
        for (int number = 0; number < count; ++number) {
            const auto picture = paintedNumber(number, width, height);
            for (int y = 0; y < height; ++y)
                raw.write(reinterpret_cast<const char*>(picture->row(0, y)),
                          std::streamsize{width} * 4);
        }
    }
    runFfmpeg(fmt::format("-f rawvideo -pix_fmt bgra -s {}x{} -r {} -i raw {}", width, height, rate,
                          options),
              movie);
}

nlohmann::json probe(const std::filesystem::path& movie, const std::string& section,
                     const std::string& streams) {
    return ffprobe("-select_streams " + streams + " -show_" + section, movie).at(section);
}

} // namespace vantro::test
