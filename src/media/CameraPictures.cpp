#include "media/CameraPictures.h"

#include "media/av/pictures/CameraConverter.h"
#include "media/values/MediaError.h"

namespace vantro::media {

struct CameraPictures::Implementation {
    av::CameraConverter converter;
};

CameraPictures::CameraPictures() : m_implementation(std::make_unique<Implementation>()) {}

CameraPictures::~CameraPictures() = default;

std::expected<std::shared_ptr<const PixelBuffer>, std::string>
CameraPictures::convert(const RawPicture& raw) try {
    return m_implementation->converter.convert(raw);
} catch (const MediaError& error) {
    return std::unexpected(error.what());
}

} // namespace vantro::media
