#include "export/gif/DecodedGif.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>

#include <gif_lib.h>
#include <gtest/gtest.h>

namespace vantro::test {
namespace {

struct GifDeleter {
    void operator()(GifFileType* file) const { DGifCloseFile(file, nullptr); }
};

bool asksToLoopForEver(std::span<const ExtensionBlock> blocks) {
    for (std::size_t i = 0; i + 1 < blocks.size(); ++i) {
        const auto& name = blocks[i];
        const auto& count = blocks[i + 1];
        if (name.Function == APPLICATION_EXT_FUNC_CODE && name.ByteCount == 11 &&
            std::memcmp(name.Bytes, "NETSCAPE2.0", 11) == 0)
            return count.ByteCount == 3 && std::memcmp(count.Bytes, "\1\0\0", 3) == 0;
    }
    return false;
}

void draw(const SavedImage& image, const ColorMapObject* globalColors, int transparent, int width,
          std::vector<std::uint32_t>& screen) {
    const auto& region = image.ImageDesc;
    const auto* colors = region.ColorMap != nullptr ? region.ColorMap : globalColors;
    for (int y = 0; y < region.Height; ++y) {
        for (int x = 0; x < region.Width; ++x) {
            const int index = image.RasterBits[y * region.Width + x];
            if (index == transparent)
                continue;
            ASSERT_LT(index, colors->ColorCount);
            const auto& color = colors->Colors[index];
            const auto row = static_cast<std::size_t>(region.Top + y) * width;
            screen.at(row + region.Left + x) =
                static_cast<std::uint32_t>(color.Red << 16 | color.Green << 8 | color.Blue);
        }
    }
}

template <typename Visit>
void visitErrors(const DecodedGif::Image& image, const media::PixelBuffer& expected, Visit visit) {
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x) {
            const auto* wanted = expected.row(0, y) + static_cast<std::ptrdiff_t>(x) * 4;
            const auto shown = image.shown.at(static_cast<std::size_t>(y) * expected.width() + x);
            for (int channel = 0; channel < 3; ++channel)
                visit(std::abs(wanted[channel] - static_cast<int>(shown >> 8 * channel & 0xFF)));
        }
    }
}

} // namespace

int DecodedGif::totalDelay() const {
    int total = 0;
    for (const auto& image : images)
        total += image.delay;
    return total;
}

const DecodedGif::Image& DecodedGif::at(int hundredths) const {
    for (const auto& image : images) {
        hundredths -= image.delay;
        if (hundredths < 0)
            return image;
    }
    return images.back();
}

DecodedGif decodeGif(const std::filesystem::path& path) {
    DecodedGif decoded;
    int error = 0;
    const std::unique_ptr<GifFileType, GifDeleter> file(DGifOpenFileName(path.c_str(), &error));
    if (!file || DGifSlurp(file.get()) != GIF_OK) {
        ADD_FAILURE() << GifErrorString(file ? file->Error : error);
        return decoded;
    }
    decoded.width = file->SWidth;
    decoded.height = file->SHeight;
    decoded.bytes = std::filesystem::file_size(path);
    std::vector<std::uint32_t> screen(static_cast<std::size_t>(file->SWidth) * file->SHeight);
    for (int i = 0; i < file->ImageCount; ++i) {
        const auto& image = file->SavedImages[i];
        GraphicsControlBlock control{};
        EXPECT_EQ(DGifSavedExtensionToGCB(file.get(), i, &control), GIF_OK);
        EXPECT_EQ(control.DisposalMode, DISPOSE_DO_NOT);
        draw(image, file->SColorMap, control.TransparentColor, file->SWidth, screen);
        decoded.images.push_back(
            {screen, control.DelayTime, image.ImageDesc.Width * image.ImageDesc.Height});
        decoded.loopsForEver |= asksToLoopForEver(
            {image.ExtensionBlocks, static_cast<std::size_t>(image.ExtensionBlockCount)});
    }
    return decoded;
}

int largestError(const DecodedGif::Image& image, const media::PixelBuffer& expected) {
    int largest = 0;
    visitErrors(image, expected, [&](int error) { largest = std::max(largest, error); });
    return largest;
}

double meanError(const DecodedGif::Image& image, const media::PixelBuffer& expected) {
    double sum = 0;
    visitErrors(image, expected, [&](int error) { sum += error; });
    return sum / (3.0 * expected.width() * expected.height());
}

} // namespace vantro::test
