#include "media/PictureFile.h"

#include "base/OutputFile.h"
#include "media/av/Libraries.h"
#include "media/av/PictureCodec.h"
#include "media/color/ColorConversion.h"

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <system_error>
#include <vector>

namespace vantro::media {
namespace {

constexpr std::uintmax_t largestFile = 256'000'000; // bytes

std::vector<std::uint8_t> bytesOf(const std::filesystem::path& path) {
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    if (error)
        av::fail("Cannot read the picture", path, error.message());
    if (size > largestFile)
        av::fail("Cannot read the picture", path, "The file is too large");
    std::vector<std::uint8_t> bytes(size);
    std::ifstream file(path, std::ios::binary);
    if (!file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size)))
        av::fail("Cannot read the picture", path, std::generic_category().message(errno));
    return bytes;
}

} // namespace

std::shared_ptr<const PixelBuffer> readPicture(const std::filesystem::path& path,
                                               PictureNeed need) {
    return av::decodePicture(path, bytesOf(path), need.width, need.height);
}

void writePng(const std::filesystem::path& path, const PixelBuffer& picture) {
    if (picture.format() == PixelFormat::i420) {
        const auto converted =
            PixelBuffer::allocate(PixelFormat::bgra, picture.width(), picture.height());
        color::convertI420ToBgra(picture, *converted);
        writePng(path, *converted);
        return;
    }
    const auto bytes = av::encodePng(picture);
    base::writeWholeFile(path, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

} // namespace vantro::media
