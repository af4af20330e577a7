#include "app/files/BackgroundPicture.h"

#include "media/PictureFile.h"
#include "media/values/MediaError.h"

namespace vantro::app::files {
namespace {

constexpr media::PictureNeed enough{.width = 64, .height = 36}; // a small one is soon read

} // namespace

std::string pictureProblem(const model::Edit& edit) {
    const auto* image = std::get_if<model::BackgroundImageSource>(&edit.background.type);
    if (image == nullptr || image->isBuiltIn)
        return {};
    try {
        media::readPicture(image->path, enough);
        return {};
    } catch (const media::MediaError& error) {
        return error.what();
    }
}

} // namespace vantro::app::files
