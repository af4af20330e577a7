#include "render/scene/ImageFile.h"

#include "base/Log.h"
#include "base/OutputFile.h"
#include "media/color/ColorConversion.h"

#include <array>
#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <expected>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include <jpeglib.h>
#include <png.h>

namespace vantro::render {
namespace {

constexpr unsigned largestSide = 16384;
constexpr std::uint64_t mostPixels = 256'000'000;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

using Picture = std::expected<std::shared_ptr<media::PixelBuffer>, std::string>;

bool isTooLarge(unsigned width, unsigned height) {
    return width > largestSide || height > largestSide ||
           std::uint64_t{width} * height > mostPixels;
}

std::string tooLarge(unsigned width, unsigned height) {
    return fmt::format("{} x {} pixels are too many", width, height);
}

void premultiply(media::PixelBuffer& picture) {
    for (int y = 0; y < picture.height(); ++y) {
        std::uint8_t* pixel = picture.mutableRow(0, y);
        for (const std::uint8_t* end = pixel + std::ptrdiff_t{picture.width()} * 4; pixel < end;
             pixel += 4)
            for (int channel = 0; channel < 3; ++channel)
                pixel[channel] = static_cast<std::uint8_t>((pixel[channel] * pixel[3] + 127) / 255);
    }
}

struct FreePng {
    void operator()(png_image* image) const { png_image_free(image); }
};

Picture readPng(std::FILE* file) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    const std::unique_ptr<png_image, FreePng> freeing(&image);
    if (png_image_begin_read_from_stdio(&image, file) == 0)
        return std::unexpected(std::string(image.message));
    if (isTooLarge(image.width, image.height))
        return std::unexpected(tooLarge(image.width, image.height));
    image.format = PNG_FORMAT_BGRA;
    auto picture = media::PixelBuffer::allocate(
        media::PixelFormat::bgra, static_cast<int>(image.width), static_cast<int>(image.height));
    if (png_image_finish_read(&image, nullptr, picture->mutableRow(0, 0), picture->stride(0),
                              nullptr) == 0)
        return std::unexpected(std::string(image.message));
    premultiply(*picture);
    return picture;
}

/// libjpeg ends a failed call by jumping out of it. The functions between set and jump therefore
/// hold nothing that would need destroying; what they make lies in here.
struct JpegReader {
    jpeg_error_mgr errors{}; // first, so that its address is the reader's
    std::jmp_buf failure{};
    std::array<char, JMSG_LENGTH_MAX> message{};
    jpeg_decompress_struct state{};
    std::shared_ptr<media::PixelBuffer> picture;

    ~JpegReader() { jpeg_destroy_decompress(&state); }
};

[[noreturn]] void leaveJpeg(j_common_ptr state) {
    auto* reader = reinterpret_cast<JpegReader*>(state->err);
    state->err->format_message(state, reader->message.data());
    std::longjmp(reader->failure, 1); // NOLINT(cert-err52-cpp,modernize-avoid-setjmp-longjmp)
}

/// Up to the picture's size. False after a failure.
bool beginJpeg(JpegReader& reader, std::FILE* file) {
    if (setjmp(reader.failure) != 0) // NOLINT(cert-err52-cpp,modernize-avoid-setjmp-longjmp)
        return false;
    jpeg_create_decompress(&reader.state);
    jpeg_stdio_src(&reader.state, file);
    jpeg_read_header(&reader.state, TRUE);
    reader.state.out_color_space = JCS_EXT_BGRA;
    return true;
}

bool finishJpeg(JpegReader& reader) {
    if (setjmp(reader.failure) != 0) // NOLINT(cert-err52-cpp,modernize-avoid-setjmp-longjmp)
        return false;
    jpeg_start_decompress(&reader.state);
    while (reader.state.output_scanline < reader.state.output_height) {
        JSAMPROW row =
            reader.picture->mutableRow(0, static_cast<int>(reader.state.output_scanline));
        jpeg_read_scanlines(&reader.state, &row, 1);
    }
    jpeg_finish_decompress(&reader.state);
    return true;
}

Picture readJpeg(std::FILE* file) {
    JpegReader reader;
    reader.state.err = jpeg_std_error(&reader.errors);
    reader.errors.error_exit = leaveJpeg;
    reader.errors.output_message = [](j_common_ptr) {}; // warnings: the picture is shown as it is
    if (!beginJpeg(reader, file))
        return std::unexpected(std::string(reader.message.data()));
    const auto& state = reader.state;
    if (isTooLarge(state.image_width, state.image_height))
        return std::unexpected(tooLarge(state.image_width, state.image_height));
    reader.picture =
        media::PixelBuffer::allocate(media::PixelFormat::bgra, static_cast<int>(state.image_width),
                                     static_cast<int>(state.image_height));
    if (!finishJpeg(reader))
        return std::unexpected(std::string(reader.message.data()));
    return reader.picture;
}

Picture readPicture(const std::filesystem::path& path) {
    const File file(std::fopen(path.c_str(), "rbe"));
    if (!file)
        return std::unexpected(std::generic_category().message(errno));
    std::array<unsigned char, 8> magic{};
    const auto length = std::fread(magic.data(), 1, magic.size(), file.get());
    if (length < magic.size())
        return std::unexpected(std::ferror(file.get()) != 0 ? std::generic_category().message(errno)
                                                            : std::string("neither PNG nor JPEG"));
    if (std::fseek(file.get(), 0, SEEK_SET) != 0)
        return std::unexpected(std::generic_category().message(errno));
    if (png_sig_cmp(magic.data(), 0, magic.size()) == 0)
        return readPng(file.get());
    if (magic[0] == 0xFF && magic[1] == 0xD8)
        return readJpeg(file.get());
    return std::unexpected(std::string("neither PNG nor JPEG"));
}

/// Rows of 3 bytes, as the PNG writer takes opaque pixels.
std::vector<std::uint8_t> packedRgb(const media::PixelBuffer& picture) {
    std::vector<std::uint8_t> packed;
    packed.reserve(static_cast<std::size_t>(picture.width()) *
                   static_cast<std::size_t>(picture.height()) * 3);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const std::uint8_t* pixel = picture.row(0, y) + std::ptrdiff_t{x} * 4;
            packed.insert(packed.end(), {pixel[2], pixel[1], pixel[0]});
        }
    return packed;
}

[[noreturn]] void failToWrite(const std::filesystem::path& path, int error) {
    throw std::filesystem::filesystem_error("cannot write", path,
                                            std::error_code(error, std::generic_category()));
}

} // namespace

ImagePointer loadImage(const std::filesystem::path& path) {
    Picture picture = readPicture(path);
    if (picture)
        return *std::move(picture);
    base::logWarning("Cannot read the picture {}: {}", path.string(), picture.error());
    return nullptr;
}

void writePng(const std::filesystem::path& path, const media::PixelBuffer& picture) {
    if (picture.format() == media::PixelFormat::i420) {
        const auto converted = media::PixelBuffer::allocate(media::PixelFormat::bgra,
                                                            picture.width(), picture.height());
        media::color::convertI420ToBgra(picture, *converted);
        writePng(path, *converted);
        return;
    }
    const auto packed = packedRgb(picture);
    base::OutputFile output(path);
    File file(std::fopen(output.temporaryPath().c_str(), "wbe"));
    if (!file)
        failToWrite(path, errno);
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width());
    image.height = static_cast<png_uint_32>(picture.height());
    image.format = PNG_FORMAT_RGB;
    errno = 0;
    const bool written =
        png_image_write_to_stdio(&image, file.get(), 0, packed.data(), 0, nullptr) != 0;
    const int writeError = errno;
    png_image_free(&image);
    if (!written)
        failToWrite(path, writeError != 0 ? writeError : EIO);
    if (std::fclose(file.release()) != 0)
        failToWrite(path, errno);
    output.commit();
}

} // namespace vantro::render
