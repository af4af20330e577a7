#include "media/PictureFile.h"

#include "archive/ArchiveError.h"
#include "archive/ArchivePath.h"
#include "base/OutputFile.h"
#include "media/av/Libraries.h"
#include "media/av/pictures/PictureCodec.h"
#include "media/color/ColorConversion.h"
#include "media/values/MediaError.h"

#include <cstdint>
#include <vector>

#include <fmt/format.h>

namespace vantro::media {
namespace {

constexpr std::uint64_t largestFile = 256'000'000; // bytes

std::vector<std::uint8_t> bytesOf(const std::filesystem::path& path) {
    try {
        const auto bytes = archive::readAll(archive::locate(path), largestFile);
        return {bytes.begin(), bytes.end()};
    } catch (const archive::ArchiveError& error) {
        throw MediaError(fmt::format("Cannot read the picture {}", error.what()));
    }
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
