#include "render/CursorThemeFile.h"

#include <algorithm>
#include <memory>

#include <X11/Xcursor/Xcursor.h>

namespace vantro::test {

bool writeCursorFile(const std::filesystem::path& path, const std::vector<unsigned>& sizes) {
    const std::unique_ptr<XcursorImages, decltype(&XcursorImagesDestroy)> images(
        XcursorImagesCreate(static_cast<int>(sizes.size())), &XcursorImagesDestroy);
    for (const unsigned size : sizes) {
        const int side = static_cast<int>(size * 3 / 2);
        XcursorImage* image = XcursorImageCreate(side, side);
        image->size = size;
        image->xhot = size / 4;
        image->yhot = size / 8;
        std::fill_n(image->pixels, image->width * image->height, 0x80402010U + size);
        images->images[images->nimage++] = image;
    }
    return XcursorFilenameSaveImages(path.c_str(), images.get()) != 0;
}

} // namespace vantro::test
